// frmPreferences: the paths to the game data and the compilers, the background picture, the
// compiler options and the room conversion options. Fields are checked as the user leaves
// them; OK applies everything and tells what changed.
#pragma once

#include <QDialog>
#include <array>
#include <functional>

#include "gamedata/autofind.h"
#include "gamedata/settings.h"

class QButtonGroup;
class QCheckBox;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace mw {

class Prompts;
class spinControl;

class frmPreferences : public QDialog {
    Q_OBJECT
  public:
    frmPreferences(Settings& settings, Prompts& prompts, QWidget* parent = nullptr);
    ~frmPreferences() override;

    // What OK changed, for the Preferences command.
    bool PathsChanged() const { return pathsChanged_; }
    bool BackgroundChanged() const { return backgroundChanged_; }

    // Where Autofind looks (this machine's places unless set).
    void SetAutofindPlaces(AutofindPlaces places) { places_ = std::move(places); }
    // Picks the OGF folder from the one given (frmOGFPath unless set); empty: no change.
    using FolderChooser = std::function<QString(QWidget*, const QString&)>;
    void SetFolderChooser(FolderChooser choose) { chooseFolder_ = std::move(choose); }

    // The buttons' commands.
    void Autofind();
    void ClearAllPaths();
    void ResetDefaults();
    void Browse(int index);

    QPushButton& okButton() { return *cmdOK_; }

  protected:
    void accept() override;
    void done(int result) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QWidget* BuildPaths();
    QWidget* BuildCompilerOptions();
    QWidget* BuildRoomOptions();
    QWidget* BuildRecoveryOptions();
    void ShowSettings();
    // Closing takes the focus from a field; that is no leaving to check.
    void StopCheckingFields();
    void WatchForChanges();
    // The rule for a field the user has just left.
    void LeaveField(QLineEdit* field);
    void ApplyCompilerOptions();
    void EnableOK() { okEnabled(true); }
    void okEnabled(bool on);

    Settings& settings_;
    Prompts& prompts_;
    AutofindPlaces places_;
    FolderChooser chooseFolder_;
    bool pathsChanged_ = false;
    bool backgroundChanged_ = false;

    // The path fields, in the order of their Browse buttons.
    enum PathField { kD3, kMission, kOGF, kCompiler, kBackground, kGame };
    std::array<QLineEdit*, 6> paths_{};
    QLineEdit* txtScaleFactor_ = nullptr;
    QLineEdit* txtErrorTolerance_ = nullptr;
    std::array<QLineEdit*, 3> txtChunkSplits_{};
    std::array<QRadioButton*, 3> optShadingMode_{};
    std::array<QCheckBox*, 7> flags_{};
    QCheckBox* chkPOFGENOutput_ = nullptr;
    std::array<QRadioButton*, 2> optOOFORF_{};
    QCheckBox* chkOutputSpecial_ = nullptr;
    spinControl* txtSpecialFaceSize_ = nullptr;
    spinControl* txtAutosave_ = nullptr;
    QPushButton* cmdOK_ = nullptr;
};

}  // namespace mw
