// Typing a value into a spinner as a user does: select the text, type, press Enter.
#pragma once

#include <QLineEdit>
#include <QTest>

#include "editor/widgets/spin_control.h"

namespace mw::test {

inline void TypeInto(spinControl* spin, const QString& text) {
    QLineEdit& box = spin->textBox();
    box.selectAll();
    QTest::keyClicks(&box, text);
    QTest::keyClick(&box, Qt::Key_Return);
}

}  // namespace mw::test
