#pragma once

#include "hostinterfaces.h"
#include "model/modelsearch.h"

#include <QPointer>

class SourceDataManager;

namespace PointEditor::Internal {

/// A search of the model as the host sees it: nodes as lines of text. Owned by the host; it may outlive the model.
/// GUI thread.
class FoundNodes final : public Core::ProductSearch
{
public:
    FoundNodes(const SourceDataManager &manager, ModelSearch search);

    [[nodiscard]] bool advance(int milliseconds) override;
    [[nodiscard]] QVector<Core::SearchResult> results(int most) const override;
    [[nodiscard]] int count() const override { return m_search.count(); }

    /// The node that a line is about; null when it has gone.
    [[nodiscard]] static PointTreeWidgetItem *nodeOf(const Core::SearchResult &result);
    /// What it is called in a title.
    [[nodiscard]] static QString nameOf(const PointTreeWidgetItem *node);

private:
    QPointer<const SourceDataManager> m_manager;
    ModelSearch m_search;
};

} // namespace PointEditor::Internal
