// The game's process, run to its end with its output handed on as it comes.
#include <QProcess>
#include <QString>
#include <QStringList>

#include "convert/game_run.h"

namespace mw {

GameRunResult RunGame(const PreparedPlay& play, GameOutput& output) {
    GameRunResult result;
    QStringList args;
    for (const std::string& a : play.Arguments)
        args << QString::fromStdString(a);
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setWorkingDirectory(QString::fromStdString(play.WorkingDir.string()));
    process.start(QString::fromStdString(play.Program.string()), args, QIODevice::ReadOnly);
    if (!process.waitForStarted()) {
        result.Error = "The game program " + play.Program.string() +
                       " could not be started: " + process.errorString().toStdString() + ".";
        return result;
    }
    result.Started = true;
    const auto hand = [&] {
        const QByteArray bytes = process.readAll();
        if (!bytes.isEmpty()) output.Output(std::string_view(bytes.constData(), bytes.size()));
    };
    while (process.state() != QProcess::NotRunning) {
        process.waitForReadyRead(100);
        hand();
        if (process.state() != QProcess::NotRunning && !output.KeepRunning()) {
            process.kill();
            process.waitForFinished();
            result.Stopped = true;
        }
    }
    hand();
    result.Crashed = !result.Stopped && process.exitStatus() == QProcess::CrashExit;
    result.ExitCode = process.exitCode();
    return result;
}

}  // namespace mw
