#include "editor/panels/panel_widgets.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

#include "editor/document.h"
#include "editor/widgets/spin_control.h"

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
    QObject::connect(box, &QCheckBox::toggled, &doc, [&doc, flag](bool on) {
        if (doc.display().*flag == on) return;
        doc.display().*flag = on;
        doc.DisplayChanged();
    });
    // The menus may switch the same flag.
    QObject::connect(&doc, &Document::displayChanged, box,
                     [&doc, box, flag] { box->setChecked(doc.display().*flag); });
}

}  // namespace mw
