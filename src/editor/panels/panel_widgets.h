// Small builders the panels share: headings, spinners configured as the panels give them,
// labelled rows whose label names the control for assistive tools.
#pragma once

#include <QString>

class QCheckBox;
class QGridLayout;
class QLabel;
class QWidget;

namespace mw {

class Document;
class VectorControl;
class spinControl;
struct DisplaySettings;

// A check box that switches one of the viewport's display aids.
void BindDisplayFlag(Document& doc, QCheckBox* box, bool DisplaySettings::*flag);

QLabel* MakeHeading(QWidget* parent, const QString& text);

spinControl* MakeSpinner(QWidget* parent, const QString& name, const QString& accessibleName,
                         float min, float max, const QString& format, float step, float power);

// A row of a grid: the label in column 0 (naming the control), the control beside it.
void AddRow(QGridLayout* grid, int row, const QString& label, QWidget* control);

// An L/R angle spinner at its maximum or minimum turns into the other end: +180 and -180 are
// the same direction.
void WrapHalfTurn(spinControl* spin);

// A direction as two angles: the L/R and U/D spinners (spinName_0, spinName_1) in rows
// `row` and `row` + 1, and under them their two dials (dialName_0, dialName_1, called
// "L/R " and "U/D " + `what`). A pick in a dial goes into its spinner, whose Change follows.
struct DirectionControls {
    spinControl* angles[2]{};
    VectorControl* dials[2]{};
};
DirectionControls AddDirectionRows(QGridLayout* grid, int row, const QString& spinName,
                                   const QString& dialName, const QString& what, int dialSize);

// Three spinners X, Y and Z for a position, named name_0 to name_2.
void AddVectorRows(QGridLayout* grid, int row, const QString& name, const QString& caption,
                   spinControl* (&spinners)[3]);

}  // namespace mw
