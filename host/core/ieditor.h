#pragma once

#include "core/icontext.h"

#include <QByteArray>

namespace Core {

class IDocument;

/// One editor window on one document. Made by an IEditorFactory, owned by the EditorManager, and the owner of its
/// document. GUI thread only.
class CORE_EXPORT IEditor : public IContext
{
    Q_OBJECT

public:
    explicit IEditor(QObject *parent = nullptr);
    ~IEditor() override;

    [[nodiscard]] virtual IDocument *document() = 0;
    /// Null for an editor without a tool bar. The editor keeps the ownership.
    [[nodiscard]] virtual QWidget *toolBar() = 0;

    /// A second editor on the same document, or null where that is not supported.
    virtual IEditor *duplicate();

    /// What is not part of the file (scrolling, selection), empty where nothing is kept.
    virtual QByteArray saveState() const;
    virtual bool restoreState(const QByteArray &state);

    /// Lines count from 1, columns from 0. Both 0 for an editor without lines.
    virtual int currentLine() const;
    virtual int currentColumn() const;
    virtual void gotoLine(int line, int column = 0, bool centerLine = true);
    virtual bool isDesignModePreferred() const;
};

} // namespace Core
