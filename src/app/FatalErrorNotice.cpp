#include "app/FatalErrorNotice.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QUrl>

namespace vellumry {

namespace {

constexpr QLatin1StringView explainSwitch("--explain-fatal-error");

} // namespace

void FatalErrorNotice::install()
{
    setFatalErrorExplainer(
        [program = QCoreApplication::applicationFilePath()](const FatalErrorReport& report) {
            QProcess notice;
            notice.setProgram(program);
            notice.setArguments(argumentsFor(report));
            // Whoever reads our lines to their end is not to wait for the person.
            notice.setStandardOutputFile(QProcess::nullDevice());
            notice.setStandardErrorFile(QProcess::nullDevice());
            notice.startDetached();
        });
}

QStringList FatalErrorNotice::argumentsFor(const FatalErrorReport& report)
{
    return {explainSwitch, report.text, report.key, report.file};
}

std::optional<FatalErrorReport> FatalErrorNotice::reportIn(const QStringList& arguments)
{
    if (arguments.size() != 4 || arguments.first() != explainSwitch)
        return std::nullopt;
    return FatalErrorReport{.text = arguments[1], .key = arguments[2], .file = arguments[3]};
}

QString FatalErrorNotice::explanation(const FatalErrorReport& report)
{
    const QString untouched = QStringLiteral("Nothing in your library was changed or removed.\n\n");
    if (report.file.isEmpty())
        return untouched + report.text;
    return untouched +
           QStringLiteral("The file \"%1\" holds the id \"%2\" twice, and Vellumry cannot tell "
                          "which of the two is meant. This can come from editing the file by hand "
                          "or from a program that joined two versions of it.\n\n"
                          "To mend it:\n"
                          "1. Open the folder and make a copy of the file.\n"
                          "2. Open the file in a text editor and search for the id.\n"
                          "3. Remove one of the two entries, or give it another id.\n"
                          "4. Save the file and start Vellumry again.")
               .arg(QDir::toNativeSeparators(report.file), report.key);
}

void FatalErrorNotice::prepare(QMessageBox& window, const FatalErrorReport& report)
{
    window.setWindowTitle(QStringLiteral("Vellumry"));
    window.setIcon(QMessageBox::Warning);
    window.setText(QStringLiteral("Vellumry had to stop."));
    window.setInformativeText(explanation(report));
    window.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    if (!report.file.isEmpty()) {
        auto* open = window.addButton(QStringLiteral("Open Folder"), QMessageBox::AcceptRole);
        open->disconnect(&window); // the window stays, with what is to be done
        QObject::connect(open, &QPushButton::clicked, &window, [folder = QFileInfo(report.file)] {
            QDesktopServices::openUrl(QUrl::fromLocalFile(folder.path()));
        });
    }
    window.setDefaultButton(window.addButton(QMessageBox::Close));
}

int FatalErrorNotice::run(const FatalErrorReport& report)
{
    QMessageBox window;
    prepare(window, report);
    window.exec();
    return 0;
}

} // namespace vellumry
