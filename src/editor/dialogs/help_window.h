// The manual, an HTML folder shipped with the program, in a window of its own.
#pragma once

#include <QString>
#include <QWidget>

class QTextBrowser;

namespace mw {

// The manual's first page beside the program (a build or a portable install) or in the
// installed share folder; empty when there is none.
QString FindHelpIndex(const QString& programDir);

// The message shown when the manual is missing.
QString MissingHelpMessage();

class HelpWindow : public QWidget {
    Q_OBJECT
  public:
    HelpWindow(const QString& index, QWidget* parent = nullptr);
    QTextBrowser& browser() { return *browser_; }

  private:
    QTextBrowser* browser_ = nullptr;
};

}  // namespace mw
