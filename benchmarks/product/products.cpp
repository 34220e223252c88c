#include "product/products.h"

#include "product/extensiontext.h"

#include <QDir>
#include <QFile>

#include <random>

namespace {

constexpr int pointsPerPlugin = 4;
constexpr int mergedTargets = 8;
constexpr int mergedShare = 5;

/// Picks words. The engine's numbers are the same everywhere, unlike those of the standard distributions.
class Words final
{
public:
    Words(std::uint32_t seed, int index) : m_engine(seed * 2654435761U + std::uint32_t(index)) { }

    int below(int limit) { return int(m_engine() % std::uint32_t(limit)); }

    QByteArray some(int count)
    {
        static const char *const words[] = { "anchor", "beacon", "chart", "depth", "engine", "fender", "gauge",
            "harbour", "island", "jetty", "keel", "lantern", "mooring", "night", "order", "pilot", "quay", "route",
            "signal", "tide", "unit", "vessel", "watch", "yard" };
        QByteArray text;
        for (int i = 0; i < count; ++i)
            text += QByteArray(i ? " " : "") + words[below(int(std::size(words)))];
        return text;
    }

private:
    std::mt19937 m_engine;
};

QByteArray number(int value, int width = 4)
{
    return QByteArray::number(value).rightJustified(width, '0');
}

QByteArray pluginId(int index)
{
    return "bench.p" + number(index);
}

QByteArray pointId(int plugin, int point)
{
    return pluginId(plugin) + ".point" + QByteArray::number(point);
}

void addAttributes(ExtensionText *text, Words *words, bool all)
{
    text->empty("String",
        { { "key", "text" }, { "name", "Text" }, { "value", "" }, { "regexp", "^.{0,40}$" }, { "tips", words->some(4) },
            { "trans", "true" } });
    text->empty("Int",
        { { "key", "order" }, { "name", "Order" }, { "value", QByteArray::number(words->below(999)) }, { "min", "0" },
            { "max", "999" } });
    if (!all)
        return;
    text->empty("String",
        { { "key", "toolTip" }, { "name", "Tool tip" }, { "value", words->some(3) }, { "regexp", "" },
            { "tips", words->some(5) }, { "trans", "true" } });
    text->empty("Bool", { { "key", "visible" }, { "name", "Visible at start" }, { "value", "true" } });
    text->empty("File",
        { { "key", "file" }, { "name", "File" }, { "value", "" }, { "filter", "Texts (*.txt *.md)" },
            { "title", "Choose a file" }, { "method", "open" } });
    text->open("Enum", { { "key", "source" }, { "name", "Source" }, { "value", "First" }, { "mode", "single" } });
    static const char *const names[] = { "First", "Second", "Third" };
    for (int i = 0; i < 3; ++i)
        text->empty("Data", { { "key", QByteArray::number(i + 1) }, { "text", names[i] }, { "icon", "" } });
    text->close();
}

/// 15 elements.
void addPoint(ExtensionText *text, Words *words, const QByteArray &id, bool hasFormat)
{
    text->open("ExtPoint",
        { { "id", id }, { "name", words->some(2) }, { "displaylabel", "text" }, { "displayicon", "icon" },
            { "hasformat", hasFormat ? "true" : "false" }, { "description", words->some(13) } });
    addAttributes(text, words, true);
    text->empty("SubExtPoint", { { "key", "menubar" }, { "name", "Menu bar" }, { "childType", "menu" } });
    text->open("SubExtPoint",
        { { "key", "menu" }, { "name", "Menu" }, { "displaylabel", "text" }, { "childType", "menu|action" } });
    addAttributes(text, words, false);
    text->close();
    text->empty("SubExtPoint", { { "key", "action" }, { "name", "Action" }, { "displaylabel", "text" } });
    text->close();
}

void addRecord(ExtensionText *text, Words *words, const QByteArray &id)
{
    text->empty("record",
        { { "id", id }, { "text", "tr('" + words->some(3) + "')" }, { "toolTip", "tr('" + words->some(5) + "')" },
            { "visible", "true" }, { "order", QByteArray::number(words->below(999)) } });
}

void openData(ExtensionText *text, const QByteArray &plugin, const QByteArray &point, const QByteArray &ofPlugin)
{
    text->open("ExtData", { { "plugin", plugin }, { "id", point }, { "extPlugin", ofPlugin } });
}

/// 14 elements: @p target with a menu bar and a tool bar.
void addFormat(ExtensionText *text, Words *words, const QByteArray &plugin, const QByteArray &target)
{
    text->open("format", { { "target", target }, { "title", words->some(2) } });
    text->open("menubar");
    text->open("menu", { { "id", plugin + ".menu" }, { "text", words->some(2) } });
    for (int i = 0; i < 5; ++i)
        text->empty("action", { { "id", plugin + ".record" + QByteArray::number(i) } });
    text->close();
    text->close();
    text->open("toolbars");
    text->open("toolbar", { { "id", plugin + ".bar" }, { "text", words->some(2) } });
    for (int i = 0; i < 4; ++i)
        text->empty("action", { { "id", plugin + ".record" + QByteArray::number(i + 4) } });
    text->close();
    text->close();
    text->close();
}

ExtensionText pluginText(std::uint32_t seed, int index, Products::Formats formats)
{
    Words words(seed, index);
    const QByteArray id = pluginId(index);
    // The first one, which is opened, always has a tab to itself.
    const bool merged = index > 0 && (formats == Products::Formats::Merged || index % mergedShare == mergedShare - 1);
    const QByteArray target = merged ? "bench.shared" + QByteArray::number(words.below(mergedTargets)) : id + ".layout";

    ExtensionText text;
    text.open("Plugin",
        { { "id", id }, { "name", words.some(2) }, { "version", "1.4.2" }, { "vendor", "Saltmere Harbour Instruments" },
            { "filename", id } });
    text.open("ExtPointSet");
    for (int i = 0; i < pointsPerPlugin; ++i)
        addPoint(&text, &words, pointId(index, i), i % 2 == 0);
    text.close();
    text.open("ExtDataSet");
    openData(&text, id, pointId(index, 0), id);
    for (int i = 0; i < 9; ++i)
        addRecord(&text, &words, id + ".record" + QByteArray::number(i));
    addFormat(&text, &words, id, target);
    text.close();
    const int other = index > 0 ? words.below(index) : 0;
    openData(&text, id, pointId(other, 2), pluginId(other));
    const int records = 18 + words.below(5);
    for (int i = 9; i < records; ++i)
        addRecord(&text, &words, id + ".record" + QByteArray::number(i));
    text.close();
    text.close();
    text.close();
    return text;
}

} // namespace

QByteArray Products::plugin(std::uint32_t seed, int index, Formats formats)
{
    return pluginText(seed, index, formats).text();
}

int Products::pluginElements(std::uint32_t seed, int index)
{
    return pluginText(seed, index, Formats::MostlyOwn).elements();
}

QString Products::write(const QString &directory, std::uint32_t seed, int count, Formats formats)
{
    QString opened;
    for (int i = 0; i < count; ++i) {
        const QString path
            = writeFile(directory + QLatin1Char('/') + QString::fromLatin1(pluginId(i)), plugin(seed, i, formats));
        if (path.isEmpty())
            return QString();
        if (opened.isEmpty())
            opened = path;
    }
    return opened;
}

QByteArray Products::large(std::uint32_t seed, int elements)
{
    constexpr int recordsPerData = 100;
    Words words(seed, 0);
    ExtensionText text;
    text.open("Plugin", { { "id", "bench.large" }, { "name", "Large" }, { "filename", "bench.large" } });
    text.open("ExtPointSet");
    int points = 0;
    while (text.elements() + 15 <= elements / 2) {
        addPoint(&text, &words, "bench.large.point" + number(points), points % 2 == 0);
        ++points;
    }
    text.close();
    text.open("ExtDataSet");
    for (int data = 0, records = 0; text.elements() < elements; ++data) {
        openData(&text, "bench.large", "bench.large.point" + number(data % qMax(points, 1)), "bench.large");
        for (int i = 0; i < recordsPerData && text.elements() < elements; ++i)
            addRecord(&text, &words, "bench.large.record" + number(records++, 5));
        text.close();
    }
    text.close();
    text.close();
    return text.text();
}

QByteArray Products::views(int records, int items)
{
    constexpr int itemsPerMenu = 100; // the menu included
    const QByteArray id = "bench.views";
    Words words(1, 0);
    ExtensionText text;
    text.open("Plugin", { { "id", id }, { "name", "Views" }, { "filename", id } });
    text.open("ExtPointSet");
    addPoint(&text, &words, id + ".records", true);
    addPoint(&text, &words, id + ".idle", true);
    text.close();
    text.open("ExtDataSet");
    openData(&text, id, id + ".records", id);
    for (int i = 0; i < records; ++i)
        addRecord(&text, &words, id + ".record" + number(i));
    addFormat(&text, &words, id, id + ".small");
    text.open("format", { { "target", id + ".large" }, { "title", "Large" } });
    text.open("menubar");
    for (int item = 1; item < items; ++item) {
        if (item % itemsPerMenu == 1) {
            text.open("menu", { { "id", id + ".menu" + number(item) }, { "text", words.some(2) } });
            continue;
        }
        text.empty("action", { { "id", id + ".record" + number(words.below(records)) } });
        if (item % itemsPerMenu == 0 || item == items - 1)
            text.close();
    }
    // A menu that has just been opened as the last item.
    if ((items - 1) % itemsPerMenu == 1)
        text.close();
    text.close();
    text.close();
    text.close();
    text.close();
    text.close();
    return text.text();
}

QString Products::writeFile(const QString &directory, const QByteArray &text)
{
    if (!QDir().mkpath(directory))
        return QString();
    QFile file(directory + QLatin1String("/extension.xml"));
    const bool written = file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.flush()
        && file.error() == QFile::NoError;
    return written ? file.fileName() : QString();
}
