// meshwright [FILE]: the editor, opening FILE (an OOF model or an ORF room) after start-up.
#include <QApplication>
#include <QFileInfo>

#include "app/application.h"

int main(int argc, char** argv) {
    mw::PrepareApplication();
    QApplication qt(argc, argv);
    QApplication::setApplicationName("Meshwright");
    mw::Application app(
        QFileInfo(QCoreApplication::applicationFilePath()).absolutePath().toStdString());
    if (!app.Start()) return 1;
    const QStringList args = QCoreApplication::arguments();
    if (args.size() > 1) app.window().LoadModel(args[1]);
    const int status = QApplication::exec();
    app.Stop();
    return status;
}
