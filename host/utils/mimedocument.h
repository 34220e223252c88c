#pragma once

#include "utils/mimerecord.h"

class QIODevice;

namespace Utils {

/// The types that one shared-mime-info document declares, or where and why it can't be used: a plain record.
struct MimeDocument
{
    QVector<MimeTypeRecord> types;
    /// "line:column: reason"; empty when the whole document is in order.
    QString errorString;

    /// Reads \a device to its end, at most 4 MiB. Elements that it does not know are passed over.
    static MimeDocument read(QIODevice *device);
};

} // namespace Utils
