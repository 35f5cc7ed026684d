#include "editor/panels/panel_widgets.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>

#include "editor/document.h"
#include "editor/widgets/spin_control.h"
#include "editor/widgets/vector_control.h"

namespace mw {

QLabel* MakeHeading(QWidget* parent, const QString& text) {
    auto* heading = new QLabel(text, parent);
    QFont bold = heading->font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.15);
    heading->setFont(bold);
    return heading;
}

spinControl* MakeSpinner(QWidget* parent, const QString& name, const QString& accessibleName,
                         float min, float max, const QString& format, float step, float power) {
    auto* spin = new spinControl(parent);
    spin->setObjectName(name);
    spin->Configure(min, max, format, step, power);
    spin->setAccessibleName(accessibleName);
    spin->textBox().setAccessibleName(accessibleName);
    spin->setMinimumWidth(90);
    return spin;
}

void AddRow(QGridLayout* grid, int row, const QString& label, QWidget* control) {
    auto* text = new QLabel(label, control->parentWidget());
    text->setBuddy(control);
    grid->addWidget(text, row, 0);
    grid->addWidget(control, row, 1);
    if (control->accessibleName().isEmpty()) {
        QString name = label;
        control->setAccessibleName(name.remove('&').remove(':').trimmed());
    }
}

void WrapHalfTurn(spinControl* spin) {
    if (spin->Value() == spin->Max()) {
        spin->SetValue(spin->Min());
    } else if (spin->Value() == spin->Min()) {
        spin->SetValue(spin->Max());
    }
}

DirectionControls AddDirectionRows(QGridLayout* grid, int row, const QString& spinName,
                                   const QString& dialName, const QString& what, int dialSize) {
    QWidget* parent = grid->parentWidget();
    DirectionControls c;
    c.angles[0] =
        MakeSpinner(parent, spinName + "_0", "L/R Angle", -180, 180, "##0.00", 0.01f, 2.0f);
    c.angles[1] = MakeSpinner(parent, spinName + "_1", "U/D Angle", -90, 90, "#0.00", 0.01f, 2.0f);
    AddRow(grid, row, "L/R Angle:", c.angles[0]);
    AddRow(grid, row + 1, "U/D Angle:", c.angles[1]);
    const DialKind kinds[2] = {DialKind::LeftRight, DialKind::UpDown};
    const char* const sides[2] = {"L/R ", "U/D "};
    auto* dials = new QHBoxLayout;
    for (int i = 0; i < 2; ++i) {
        VectorControl* dial = new VectorControl(kinds[i], parent);
        spinControl* spin = c.angles[i];
        dial->setObjectName(QString("%1_%2").arg(dialName).arg(i));
        dial->setAccessibleName(sides[i] + what);
        dial->setFixedSize(dialSize, dialSize);
        dials->addWidget(dial);
        QObject::connect(dial, &VectorControl::Change, spin, [dial, spin](double degrees) {
            spin->SetValue(static_cast<float>(degrees));
            dial->SetAngle(spin->Value());
        });
        c.dials[i] = dial;
    }
    dials->addStretch(1);
    grid->addLayout(dials, row + 2, 0, 1, 2);
    return c;
}

void AddVectorRows(QGridLayout* grid, int row, const QString& name, const QString& caption,
                   spinControl* (&spinners)[3]) {
    const char* const axes[3] = {"X", "Y", "Z"};
    for (int i = 0; i < 3; ++i) {
        spinners[i] = MakeSpinner(grid->parentWidget(), QString("%1_%2").arg(name).arg(i),
                                  caption + " " + axes[i], -90000, 90000, "####0.00", 0.01f, 1.25f);
        AddRow(grid, row + i, QString(axes[i]) + ":", spinners[i]);
    }
}

void BindDisplayFlag(Document& doc, QCheckBox* box, bool DisplaySettings::*flag) {
    box->setChecked(doc.display().*flag);
    QObject::connect(box, &QCheckBox::toggled, &doc,
                     [&doc, flag](bool on) { doc.SetDisplayFlag(flag, on); });
    // The menus may switch the same flag.
    QObject::connect(&doc, &Document::displayChanged, box,
                     [&doc, box, flag] { box->setChecked(doc.display().*flag); });
}

}  // namespace mw
