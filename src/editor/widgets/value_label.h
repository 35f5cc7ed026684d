// A label that shows a value (a frame, a count, a name): assistive tools read its caption
// and the value together, so the value is never only on screen.
#pragma once

#include <QString>

class QLabel;

namespace mw {

// Names the label by its caption once ("Timeline Frame"); later values join it.
void SetValueCaption(QLabel* label, const QString& caption);
// Shows `value` and names the label "CAPTION: VALUE" (the caption alone while empty).
void ShowValue(QLabel* label, const QString& value);

}  // namespace mw
