#pragma once

#include "extensionfile/limits.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

namespace ExtensionFile {

/// Builds the bytes of one document: the processing instruction, then one element per line, indented by 4 spaces a
/// level. What it returns is always taken back by read() with the same elements and attributes, but for a document
/// without a root, which is the instruction alone. Owned by whoever writes, one per document, any one thread.
///
/// What XML can't carry costs only itself, and one line in the log each (for the first 20):
/// - a character that no document can hold is left out of its value;
/// - an attribute with an illegal name, or a name that the element has already, is left out;
/// - an element with an illegal name is left out with its attributes, and its children take its place under its parent:
///   leaving them out as well could cost half the file for one bad name.
/// What would break the whole document makes it fail: an illegal name for the root, a second root, start and end that
/// do not match, more than the reader's limits allow. Nothing is ever returned then.
class Writer final
{
public:
    /// @p path is only named in the log. @p limits must not be wider than those of the reading to come.
    explicit Writer(const QString &path = QString(), const Limits &limits = Limits());

    /// Makes room for a document of about this many bytes, so that it need not be moved while it grows.
    void reserve(qint64 bytes);

    void startElement(const QString &name);

    /// Adds to the element started last, which must have no child yet.
    void attribute(const QString &name, const QString &value);

    void endElement();

    /// The document in UTF-8, or a null array when it failed or an element is still open. Call it once, last.
    [[nodiscard]] QByteArray finish();

    [[nodiscard]] bool hasFailed() const { return !m_failure.isEmpty(); }
    [[nodiscard]] QString failure() const { return m_failure; }

    /// How many elements, attributes and values were left out or shortened.
    [[nodiscard]] int omissions() const { return m_omissions; }
    /// The first 20 of them, a line each.
    [[nodiscard]] const QStringList &omitted() const { return m_omitted; }

    /// The document without a root element: `<?xml version="1.0" encoding="utf-8"?>` and a line feed.
    [[nodiscard]] static QByteArray instructionAlone();

private:
    void appendEscaped(const QString &value);
    void indent();
    void omit(const QString &what);
    void fail(const QString &reason);
    bool within(qint64 count, qint64 maximum, const char *reason);

    const QString m_path;
    const Limits m_limits;
    QByteArray m_bytes = instructionAlone();
    QVector<QByteArray> m_open; ///< names, a null one for an element that is left out
    QStringList m_attributeNames;
    QString m_failure;
    bool m_startTagOpen = false;
    bool m_rootDone = false;
    int m_depth = 0;
    int m_omissions = 0;
    QStringList m_omitted;
    int m_elements = 0;
    qint64 m_attributes = 0;
    qint64 m_attributeText = 0;
};

} // namespace ExtensionFile
