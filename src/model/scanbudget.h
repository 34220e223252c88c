#pragma once

#include "extensionfile/limits.h"

#include <mutex>

/// What the files of one scan may still bring. Thread-safe.
class ScanBudget final
{
public:
    explicit ScanBudget(const ExtensionFile::Limits &limits = ExtensionFile::Limits())
        : m_elements(limits.maximumScanElements), m_attributeText(limits.maximumScanAttributeText)
    { }

    /// False, with nothing taken, when there is not so much left.
    [[nodiscard]] bool take(qint64 elements, qint64 attributeText)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (elements > m_elements || attributeText > m_attributeText)
            return false;
        m_elements -= elements;
        m_attributeText -= attributeText;
        return true;
    }

private:
    std::mutex m_mutex;
    qint64 m_elements;
    qint64 m_attributeText;
};
