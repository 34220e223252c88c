#include "realizationicons.h"

#include "boundedimage.h"
#include "model/pointtreewidgetitem.h"

#include <QCache>
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmap>

namespace {

/// A frame with a line through it, in whatever colours the program has when it is painted.
class Placeholder final : public QIconEngine
{
public:
    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State /*state*/) override
    {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const auto role = mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::Text;
        QColor color = QGuiApplication::palette().color(group, role);
        color.setAlphaF(0.45);
        const qreal side = qMin(rect.width(), rect.height());
        QRectF frame(0, 0, side * 0.72, side * 0.72);
        frame.moveCenter(QRectF(rect).center());
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(QPen(color, qMax(1.0, side / 16.0)));
        painter->setBrush(Qt::NoBrush);
        painter->drawRoundedRect(frame, side / 10.0, side / 10.0);
        painter->drawLine(
            frame.bottomLeft() + QPointF(side, -side) * 0.14, frame.topRight() - QPointF(side, -side) * 0.14);
        painter->restore();
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    [[nodiscard]] QIconEngine *clone() const override { return new Placeholder(*this); }
    [[nodiscard]] QString iconName() const override { return RealizationIcons::placeholderName(); }
};

/// A picture file that is read when it is first painted or asked for: a product names thousands of icons, most of which
/// nobody ever looks at.
class FileEngine final : public QIconEngine
{
public:
    explicit FileEngine(const QString &path) : m_path(path) { }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        picture().paint(painter, rect, Qt::AlignCenter, mode, state);
    }
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return picture().pixmap(size, mode, state);
    }
    QSize actualSize(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return picture().actualSize(size, mode, state);
    }
    [[nodiscard]] QList<QSize> availableSizes(QIcon::Mode mode, QIcon::State state) const override
    {
        return picture().availableSizes(mode, state);
    }
    [[nodiscard]] QIconEngine *clone() const override { return new FileEngine(*this); }
    [[nodiscard]] QString iconName() const override { return picture().name(); }

private:
    [[nodiscard]] const QIcon &picture() const;

    QString m_path;
    mutable QIcon m_picture; ///< null until it was read
};

/// The icons in use so far. Emptied before the application object goes, since pixmaps don't outlive it.
class Cache final
{
public:
    static Cache &instance()
    {
        static Cache cache;
        return cache;
    }
    ~Cache() { qRemovePostRoutine(clear); }
    Cache(const Cache &) = delete;
    Cache &operator=(const Cache &) = delete;

    QIcon icon(const QFileInfo &file)
    {
        const QString path = file.filePath();
        const qint64 time = file.lastModified().toMSecsSinceEpoch();
        const Entry *known = m_entries.object(path);
        if (known && known->time == time && known->size == file.size())
            return known->icon;
        const QIcon icon(new FileEngine(path));
        m_entries.insert(path, new Entry { icon, time, file.size() });
        return icon;
    }

    /// The picture of @p path takes this much memory from now on.
    void charge(const QString &path, int kilobytes)
    {
        if (Entry *entry = m_entries.take(path))
            m_entries.insert(path, entry, kilobytes);
    }

private:
    struct Entry
    {
        QIcon icon;
        qint64 time;
        qint64 size;
    };
    static constexpr int maximumKilobytes = 64 * 1024;

    Cache() : m_entries(maximumKilobytes) { qAddPostRoutine(clear); }
    static void clear() { instance().m_entries.clear(); }

    QCache<QString, Entry> m_entries;
};

const QIcon &FileEngine::picture() const
{
    if (!m_picture.isNull())
        return m_picture;
    const QVector<QImage> images = BoundedImage::read(m_path);
    int kilobytes = 1;
    for (const QImage &image : images) {
        m_picture.addPixmap(QPixmap::fromImage(image));
        kilobytes += int(image.sizeInBytes() / 1024);
    }
    if (images.isEmpty())
        m_picture = QIcon(new Placeholder);
    // What follows may end the cache's hold on this icon, but not that of whoever asks.
    Cache::instance().charge(m_path, kilobytes);
    return m_picture;
}

/// Made absolute by hand: ":/" and the prefixes of search paths mean something else to Qt's file classes.
QString plainName(const QString &path)
{
    return path.startsWith(QLatin1Char('/')) ? path : QDir::currentPath() + QLatin1Char('/') + path;
}

} // namespace

QString RealizationIcons::path(const QString &value, const QString &basePath)
{
    if (value.isEmpty() || QFileInfo(plainName(value)).isFile())
        return value;
    return basePath + value;
}

QIcon RealizationIcons::icon(const QString &value, const QString &basePath)
{
    return fromFile(path(value, basePath));
}

QIcon RealizationIcons::fromFile(const QString &path)
{
    if (path.isEmpty())
        return {};
    const QFileInfo file(plainName(path));
    // Looked at first: what is missing is asked for again and again, and may come.
    return file.isFile() ? Cache::instance().icon(file) : QIcon(new Placeholder);
}

QIcon RealizationIcons::of(PointTreeWidgetItem *node)
{
    return node ? icon(node->property(QStringLiteral("icon")).toString(), node->basePath()) : QIcon();
}

QString RealizationIcons::placeholderName()
{
    return QStringLiteral("image-missing");
}
