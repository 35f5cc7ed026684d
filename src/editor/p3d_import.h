// File > Import P3D...: runs the model compiler on a P3D file through wine, shows what it
// printed, and opens the model it wrote beside the P3D file.
#pragma once

#include <QObject>
#include <QPointer>

#include "editor/dialogs/pofgen_output.h"
#include "gamedata/settings.h"

class QWidget;

namespace mw {

class FileCommands;
class Prompts;

inline constexpr const char* kP3DFilter = "Parallax 3D Format (*.p3d *.P3D)";

// The message when wine cannot be found.
QString NoWineMessage();

class P3DImport : public QObject {
    Q_OBJECT
  public:
    P3DImport(FileCommands& files, Settings& settings, Prompts& prompts, QWidget* window);

    // The command. True when a compiled model was loaded.
    bool Import();
    // Compiles and opens a chosen P3D file (the command after its file dialog).
    bool ImportFile(const QString& p3dPath);

    // The output window, once shown.
    frmPOFGEN* outputWindow() const { return output_; }
    // After how long a running compiler may be stopped (5 minutes unless set).
    void SetAskToStopAfter(double seconds) { askAfter_ = seconds; }

  private:
    void ShowOutput(const QString& text);

    FileCommands& files_;
    Settings& settings_;
    Prompts& prompts_;
    QWidget* window_;
    QPointer<frmPOFGEN> output_;
    double askAfter_ = 300.0;
};

}  // namespace mw
