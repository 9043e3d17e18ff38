// The least that a Qt Widgets program can be: what the program's own start and memory are held
// against.

#include <QApplication>

#include <cstdio>

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    std::puts("ready");
    std::fflush(stdout);
    return QApplication::exec();
}
