#include "convert/pofgen_runner.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QStandardPaths>
#include <QString>
#include <QStringList>

namespace mw {
namespace {

constexpr int kPollMs = 50;

QString FromLocal(const std::string& text) {
    return QString::fromLocal8Bit(text.data(), static_cast<qsizetype>(text.size()));
}

// Wine's own diagnostics would bury the compiler's output; they stay off unless the user
// asked for them.
QProcessEnvironment CompilerEnvironment() {
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    if (!env.contains("WINEDEBUG")) env.insert("WINEDEBUG", "-all");
    return env;
}

}  // namespace

std::string WindowsPathOf(const std::string& path) {
    if (path.empty()) return {};
    const QString winepath = QStandardPaths::findExecutable("winepath");
    if (!winepath.isEmpty()) {
        QProcess p;
        p.setProcessEnvironment(CompilerEnvironment());
        p.start(winepath, {"-w", FromLocal(path)});
        if (p.waitForStarted() && p.waitForFinished(60000) &&
            p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0) {
            return QString::fromLocal8Bit(p.readAllStandardOutput()).trimmed().toStdString();
        }
        return {};
    }
    // Wine maps the Unix root to drive Z: by default.
    std::string out = "Z:" + path;
    for (char& c : out) {
        if (c == '/') c = '\\';
    }
    return out;
}

CompilerRun RunCompiler(const std::string& compilerPath, const std::string& switches,
                        const std::string& p3dPath, CompilerWatch* watch) {
    CompilerRun run;
    const QString wine = QStandardPaths::findExecutable("wine");
    if (wine.isEmpty()) {
        run.status = CompilerRun::Status::NoWine;
        return run;
    }
    run.windowsPath = WindowsPathOf(p3dPath);
    if (run.windowsPath.empty()) {
        run.status = CompilerRun::Status::NoWindowsPath;
        return run;
    }
    QStringList args{FromLocal(compilerPath)};
    args += FromLocal(switches).split(' ', Qt::SkipEmptyParts);
    args += FromLocal(run.windowsPath);

    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setProcessEnvironment(CompilerEnvironment());
    process.start(wine, args, QIODevice::ReadOnly);
    if (!process.waitForStarted()) {
        run.status = CompilerRun::Status::NotStarted;
        return run;
    }
    QElapsedTimer clock;
    clock.start();
    QByteArray output;
    while (process.state() != QProcess::NotRunning) {
        process.waitForReadyRead(kPollMs);
        output += process.readAll();
        if (watch != nullptr && process.state() != QProcess::NotRunning &&
            !watch->KeepWaiting(static_cast<double>(clock.elapsed()) / 1000.0)) {
            process.kill();
            process.waitForFinished();
            run.status = CompilerRun::Status::Cancelled;
            run.output = (output + process.readAll()).toStdString();
            return run;
        }
    }
    output += process.readAll();
    run.output = output.toStdString();
    run.status = CompilerRun::Status::Finished;
    return run;
}

}  // namespace mw
