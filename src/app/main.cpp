// meshwright [MODEL]: the editor, opening MODEL (an OOF model or an ORF room) after start-up.
#include <QApplication>
#include <QFileInfo>
#include <iostream>

#include "app/application.h"
#include "app/command_line.h"

int main(int argc, char** argv) {
    // The command line is read before Qt needs a display, so --help works without one.
    const mw::EditorArguments args =
        mw::ParseEditorArguments(std::vector<std::string>(argv + 1, argv + argc));
    if (args.help) {
        std::cout << mw::kEditorUsage;
        return 0;
    }
    if (!args.error.empty()) {
        std::cerr << args.error << "\n" << mw::kEditorUsage;
        return 64;
    }
    mw::PrepareApplication();
    QApplication qt(argc, argv);
    QApplication::setApplicationName("Meshwright");
    mw::Application app(
        QFileInfo(QCoreApplication::applicationFilePath()).absolutePath().toStdString());
    if (!app.Start()) return 1;
    if (!args.model.empty()) app.window().LoadModel(QString::fromLocal8Bit(args.model.c_str()));
    const int status = QApplication::exec();
    app.Stop();
    return status;
}
