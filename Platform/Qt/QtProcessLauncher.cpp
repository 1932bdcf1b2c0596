#include "Platform/Qt/QtProcessLauncher.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

namespace corvane {

bool launchDetached(const DetachedLaunch& launch) {
    QProcess process;
    process.setProgram(QString::fromStdString(launch.program));
    QStringList arguments;
    for (const std::string& argument : launch.arguments) {
        arguments.append(QString::fromStdString(argument));
    }
    process.setArguments(arguments);
    if (launch.workingDirectory) {
        process.setWorkingDirectory(QString::fromStdString(launch.workingDirectory->string()));
    }
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const auto& [name, value] : launch.environment) {
        environment.insert(QString::fromStdString(name), QString::fromStdString(value));
    }
    process.setProcessEnvironment(environment);
    return process.startDetached();
}

}  // namespace corvane
