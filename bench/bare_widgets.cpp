// The least that a Qt Widgets program can be: what the program's own start and memory are held
// against.
//
//   bare_widgets             shows nothing
//   bare_widgets --window    shows an empty window of the size of the program's own

#include <QApplication>
#include <QWidget>

#include <cstdio>

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    QWidget window;
    if (argc > 1) {
        window.resize(1024, 680);
        window.show();
    }
    std::puts("ready");
    std::fflush(stdout);
    return QApplication::exec();
}
