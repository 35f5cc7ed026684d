#include "editor/p3d_import.h"

#include <QApplication>
#include <QWidget>

#include "convert/pofgen.h"
#include "convert/pofgen_runner.h"
#include "editor/dialogs/pofgen_output.h"
#include "editor/file_commands.h"
#include "editor/prompts.h"
#include "gamedata/file_names.h"
#include "model/text_codec.h"

namespace mw {
namespace {

// While the compiler runs: the busy cursor, a window that keeps repainting, and after a
// while the offer to stop it (asked again each time that long has passed once more).
class ImportWatch : public CompilerWatch {
  public:
    ImportWatch(Prompts& prompts, QWidget* window, double askAfter)
        : prompts_(prompts), window_(window), askAfter_(askAfter), nextAsk_(askAfter) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
    }
    ~ImportWatch() override { QApplication::restoreOverrideCursor(); }

    bool KeepWaiting(double seconds) override {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        if (seconds < nextAsk_) return true;
        QApplication::setOverrideCursor(Qt::ArrowCursor);
        const auto answer = prompts_.Ask(window_,
                                         QString("POFGEN has been running for %1 minutes. Stop it?")
                                             .arg(static_cast<int>(seconds / 60.0 + 0.5)),
                                         QMessageBox::Yes | QMessageBox::No, PromptIcon::Question);
        QApplication::restoreOverrideCursor();
        nextAsk_ = seconds + askAfter_;
        return answer != QMessageBox::Yes;
    }

  private:
    Prompts& prompts_;
    QWidget* window_;
    double askAfter_;
    double nextAsk_;
};

QString OutputText(const std::string& bytes) {
    QString text = QString::fromStdString(Utf8From1252(bytes));
    text.replace("\r\n", "\n");
    return text;
}

}  // namespace

QString NoWineMessage() {
    return "Error running POFGEN!\nThe model compilers are Windows programs and need wine: "
           "install it (for example \"sudo apt install wine\") and make sure \"wine\" is on "
           "the PATH.";
}

P3DImport::P3DImport(FileCommands& files, Settings& settings, Prompts& prompts, QWidget* window)
    : QObject(window), files_(files), settings_(settings), prompts_(prompts), window_(window) {}

bool P3DImport::Import() {
    const QString chosen = prompts_.OpenFileName(window_, "Import P3D file", kP3DFilter, {});
    if (chosen.isEmpty()) return false;
    window_->repaint();
    return ImportFile(chosen);
}

bool P3DImport::ImportFile(const QString& p3dPath) {
    // The compiled model replaces the open one, so unsaved changes are asked about first.
    if (!files_.MaybeSave()) return false;
    CompilerRun run;
    {
        ImportWatch watch(prompts_, window_, askAfter_);
        run = RunCompiler(settings_.POFGENPath, settings_.PofgenSwitches, p3dPath.toStdString(),
                          &watch);
    }
    const QString output = OutputText(run.output);
    switch (run.status) {
        case CompilerRun::Status::NoWine:
            prompts_.Message(window_, NoWineMessage(), PromptIcon::None);
            return false;
        case CompilerRun::Status::NotStarted:
            prompts_.Message(window_, "Error running POFGEN!", PromptIcon::None);
            return false;
        case CompilerRun::Status::NoWindowsPath:
            prompts_.Message(window_, "Filename 0 length!", PromptIcon::None);
            return false;
        case CompilerRun::Status::Cancelled:
            ShowOutput(output);
            return false;
        case CompilerRun::Status::Finished:
            break;
    }
    if (CompilerReportedErrors(run.output)) {
        prompts_.Message(window_, "POFGEN had errors. See Output for details.", PromptIcon::None);
        ShowOutput(output);
        return false;
    }
    if (settings_.PofDisplayOutput) ShowOutput(output);
    // The compiler may write the model's name in other capitals than ours.
    std::string model = CompiledModelPath(p3dPath.toStdString());
    if (const auto found = FindFileIgnoringCase(model)) model = found->string();
    return files_.OpenCompiled(QString::fromStdString(model));
}

void P3DImport::ShowOutput(const QString& text) {
    if (output_ == nullptr) output_ = new frmPOFGEN(window_);
    output_->SetOutput(text);
    output_->show();
    output_->raise();
}

}  // namespace mw
