#include "realizationicons.h"

#include "boundedimage.h"
#include "model/keys.h"
#include "model/pointtreewidgetitem.h"

#include <QCache>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmap>

#include <sys/stat.h>

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
/// nobody ever looks at. A drawing is drawn only in the sizes that somebody wants.
class FileEngine final : public QIconEngine
{
public:
    explicit FileEngine(const QString &path) : m_path(path) { }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        const qreal ratio = painter->device()->devicePixelRatioF();
        icon(rect.size() * ratio).paint(painter, rect, Qt::AlignCenter, mode, state);
    }
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return icon(size).pixmap(size, mode, state);
    }
    QSize actualSize(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        // Layouts ask for every icon, seen or not, and give it all the room that it may want.
        return m_icon.isNull() ? size : m_icon.actualSize(size, mode, state);
    }
    [[nodiscard]] QList<QSize> availableSizes(QIcon::Mode mode, QIcon::State state) const override;
    [[nodiscard]] QIconEngine *clone() const override { return new FileEngine(*this); }
    [[nodiscard]] QString iconName() const override { return icon({}).name(); }

private:
    /// With a picture that fits @p size, in pixels.
    [[nodiscard]] const QIcon &icon(const QSize &size) const;
    void read(int side) const;

    QString m_path;
    mutable BoundedImage::Picture m_picture;
    mutable QIcon m_icon; ///< null until the file was read
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

    /// The icon of the regular file @p path as it is now.
    QIcon icon(const QString &path, const struct stat &file)
    {
        const Entry *known = m_entries.object(path);
        if (known && known->seconds == file.st_mtim.tv_sec && known->nanoseconds == file.st_mtim.tv_nsec
            && known->size == file.st_size)
            return known->icon;
        const QIcon icon(new FileEngine(path));
        m_entries.insert(path, new Entry { icon, file.st_mtim.tv_sec, file.st_mtim.tv_nsec, file.st_size });
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
        qint64 seconds; ///< when it was written, since 1970
        qint64 nanoseconds;
        qint64 size; ///< bytes
    };
    static constexpr int maximumKilobytes = 64 * 1024;

    Cache() : m_entries(maximumKilobytes) { qAddPostRoutine(clear); }
    static void clear() { instance().m_entries.clear(); }

    QCache<QString, Entry> m_entries;
};

const QIcon &FileEngine::icon(const QSize &size) const
{
    const int side = BoundedImage::drawingSide(size);
    if (m_icon.isNull())
        read(side);
    else if (!m_picture.drawing.isEmpty()
        && !m_icon.availableSizes().contains(BoundedImage::drawnSize(m_picture, side)))
        m_icon.addPixmap(QPixmap::fromImage(BoundedImage::drawn(m_picture, side)));
    return m_icon;
}

void FileEngine::read(int side) const
{
    m_picture = BoundedImage::read(m_path, side);
    int bytes = int(m_picture.image.sizeInBytes()) + m_picture.drawing.size();
    if (m_picture.image.isNull()) {
        m_picture.drawing.clear();
        m_icon = QIcon(new Placeholder);
    } else {
        m_icon.addPixmap(QPixmap::fromImage(m_picture.image));
        m_picture.image = QImage();
    }
    if (!m_picture.drawing.isEmpty()) {
        for (const int further : BoundedImage::drawingSides)
            bytes += further * further * int(sizeof(QRgb));
    }
    // What follows may end the cache's hold on this icon, but not that of whoever asks.
    Cache::instance().charge(m_path, 1 + bytes / 1024);
}

QList<QSize> FileEngine::availableSizes(QIcon::Mode mode, QIcon::State state) const
{
    const QIcon &known = icon({});
    if (m_picture.drawing.isEmpty())
        return known.availableSizes(mode, state);
    QList<QSize> sizes;
    for (const int side : BoundedImage::drawingSides)
        sizes.append(BoundedImage::drawnSize(m_picture, side));
    return sizes;
}

/// Made absolute by hand: ":/" and the prefixes of search paths mean something else to Qt's file classes.
QString plainName(const QString &path)
{
    return path.startsWith(QLatin1Char('/')) ? path : QDir::currentPath() + QLatin1Char('/') + path;
}

/// Many are looked for at once, thousands in a large product; QFileInfo would ask for each file several times over, and
/// for the time zone.
bool isFile(const QString &path, struct stat *data)
{
    return ::stat(QFile::encodeName(path).constData(), data) == 0 && S_ISREG(data->st_mode);
}

} // namespace

QString RealizationIcons::path(const QString &value, const QString &basePath)
{
    struct stat data = {};
    if (value.isEmpty() || isFile(plainName(value), &data))
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
    const QString name = plainName(path);
    struct stat file = {};
    // Looked at first: what is missing is asked for again and again, and may come.
    return isFile(name, &file) ? Cache::instance().icon(name, file) : QIcon(new Placeholder);
}

QIcon RealizationIcons::of(PointTreeWidgetItem *node)
{
    return node ? icon(node->property(iconKey).toString(), node->basePath()) : QIcon();
}

QString RealizationIcons::placeholderName()
{
    return QStringLiteral("image-missing");
}
