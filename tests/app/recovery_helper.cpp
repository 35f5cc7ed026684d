// The editor as a process of its own, for the crash test: "edit MODEL" starts the editor,
// opens MODEL, renames a part through the document, waits until the recovery copy is on disk,
// prints "written" and runs on until it is killed; "recover" starts the editor, answers
// "Recover" to the first question and prints what the document then holds.
#include <QApplication>
#include <QFileInfo>
#include <iostream>

#include "app/application.h"
#include "editor/autosave.h"
#include "editor/document.h"
#include "editor/edit_commands.h"
#include "support/scripted_prompts.h"

int main(int argc, char** argv) {
    if (argc < 2) return 64;
    const std::string mode = argv[1];
    mw::PrepareApplication();
    QApplication qt(argc, argv);
    mw::test::ScriptedPrompts prompts;
    prompts.choices = {0};  // Recover
    mw::Application app(
        QFileInfo(QCoreApplication::applicationFilePath()).absolutePath().toStdString(), &prompts);
    if (!app.Start()) return 1;
    mw::Document& doc = app.window().document();
    if (mode == "edit" && argc == 3) {
        if (!app.window().LoadModel(argv[2])) return 2;
        doc.Apply(mw::MakeRenameCommand(doc, 1, "crashed_wing"));
        auto* autosave = app.window().findChild<mw::Autosave*>();
        autosave->SetClock([] { return qint64{1} << 40; });  // long after the change
        autosave->Check();
        autosave->WaitForWrite();
        std::cout << "written " << autosave->modelFile().toStdString() << std::endl;
        return QApplication::exec();  // until the test kills the process
    }
    if (mode == "recover") {
        std::cout << "questions " << prompts.questions.size() << "\n"
                  << "path " << doc.ModelPath().toStdString() << "\n"
                  << "modified " << doc.isModified() << "\n"
                  << "title " << app.window().windowTitle().toStdString() << "\n"
                  << "star " << app.window().isWindowModified() << "\n"
                  << "part " << (doc.hasModel() ? doc.model().Sub(1).Name : "") << std::endl;
        return 0;
    }
    return 64;
}
