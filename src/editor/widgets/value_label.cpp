#include "editor/widgets/value_label.h"

#include <QLabel>
#include <QVariant>

namespace mw {
namespace {
constexpr const char* kCaption = "valueCaption";
}

void SetValueCaption(QLabel* label, const QString& caption) {
    label->setProperty(kCaption, caption);
    ShowValue(label, label->text());
}

void ShowValue(QLabel* label, const QString& value) {
    label->setText(value);
    const QString caption = label->property(kCaption).toString();
    label->setAccessibleName(value.isEmpty() ? caption : caption + ": " + value);
}

}  // namespace mw
