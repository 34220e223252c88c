#include <QFile>
#include <QObject>

namespace {

/// Leaves a mark as soon as the library is loaded, which is before anybody can ask what it is.
const bool wasHere = [] {
    QFile mark(QFile::decodeName(qgetenv("INTRUDER_MARK")));
    return mark.open(QIODevice::WriteOnly);
}();

} // namespace

/// A library that somebody has laid beside a file in the hope that the workbench takes it for a plug-in of Qt.
class Intruder final : public QObject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QPA.QPlatformIntegrationFactoryInterface.5.3" FILE "intruder.json")
};

#include "intruder.moc"
