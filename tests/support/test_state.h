// Test programs keep the editor's recovery copies out of the user's state folder.
#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QDir>
#include <QtGlobal>

namespace mw::test {

inline void UseScratchStateFolder() {
    qputenv("XDG_STATE_HOME",
            QDir::temp()
                .filePath(QString("mw-test-state-%1").arg(QCoreApplication::applicationPid()))
                .toLocal8Bit());
}

}  // namespace mw::test
