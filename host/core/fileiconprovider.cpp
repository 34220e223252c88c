#include "core/fileiconprovider.h"

#include <QApplication>
#include <QFileIconProvider>
#include <QFileInfo>
#include <QHash>
#include <QPainter>
#include <QPixmap>
#include <QStyle>

namespace Core {

namespace {

struct Registration
{
    QString iconPath;
    QIcon composed; ///< Null until it is asked for: resources may come after the registration.
};

QHash<QString, Registration> &registrations()
{
    static QHash<QString, Registration> all;
    return all;
}

QIcon plainFileIcon()
{
    const QIcon icon = QFileIconProvider().icon(QFileIconProvider::File);
    return icon.isNull() ? QApplication::style()->standardIcon(QStyle::SP_FileIcon) : icon;
}

/// The registration with the longest suffix that matches: "extension.xml" wins over "xml".
Registration *findRegistration(const QString &fileName)
{
    auto &all = registrations();
    for (int start = 0; start >= 0 && start < fileName.size();) {
        const auto found = all.find(fileName.mid(start));
        if (found != all.end())
            return &found.value();
        const int dot = fileName.indexOf(QLatin1Char('.'), start);
        start = dot < 0 ? -1 : dot + 1;
    }
    return nullptr;
}

} // namespace

void FileIconProvider::registerIconOverlayForSuffix(const QString &iconPath, const QString &suffix)
{
    if (suffix.isEmpty())
        return;
    // Icons must not outlive the application object.
    if (registrations().isEmpty())
        qAddPostRoutine([] { registrations().clear(); });
    registrations().insert(suffix, { iconPath, QIcon() });
}

QIcon FileIconProvider::icon(const QFileInfo &file)
{
    if (Registration *registration = findRegistration(file.fileName())) {
        if (registration->composed.isNull()) {
            const QPixmap overlay(registration->iconPath);
            if (overlay.isNull())
                return plainFileIcon();
            registration->composed = overlaid(plainFileIcon(), QIcon(overlay));
        }
        return registration->composed;
    }
    const QIcon icon = QFileIconProvider().icon(file);
    return icon.isNull() ? plainFileIcon() : icon;
}

QIcon FileIconProvider::overlaid(const QIcon &base, const QIcon &overlay)
{
    QIcon result;
    for (const int edge : { 16, 22, 24, 32, 48, 64 }) {
        QPixmap canvas(edge, edge);
        canvas.fill(Qt::transparent);
        QPainter painter(&canvas);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        base.paint(&painter, canvas.rect());
        painter.drawPixmap(canvas.rect(),
            overlay.pixmap(edge, edge).scaled(edge, edge, Qt::KeepAspectRatio, Qt::SmoothTransformation));
        painter.end();
        result.addPixmap(canvas);
    }
    return result;
}

} // namespace Core
