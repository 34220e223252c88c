#include "extensionsystem/sharedobjectfile.h"

#include <QCoreApplication>
#include <QFile>
#include <QVector>

#include <cstring>

#include <dlfcn.h>
#include <link.h>

namespace ExtensionSystem {

namespace {

using FileHeader = ElfW(Ehdr);
using SectionHeader = ElfW(Shdr);

/// The header of this library, which runs here.
const FileHeader &ownHeader()
{
    Dl_info info = {};
    const int found = ::dladdr(reinterpret_cast<const void *>(&ownHeader), &info);
    Q_ASSERT(found != 0);
    Q_UNUSED(found)
    return *static_cast<const FileHeader *>(info.dli_fbase);
}

/// Walks the headers of one open file. A damaged header is an ordinary outcome, so every offset is checked against the
/// size of the file before it is used. Lives for one inspection.
class Inspector final
{
    Q_DECLARE_TR_FUNCTIONS(ExtensionSystem::SharedObjectFile)
public:
    explicit Inspector(const QString &path) : m_file(path) { }

    SharedObjectFile inspect()
    {
        if (!m_file.open(QIODevice::ReadOnly))
            return damaged(tr("the file can't be read: %1").arg(m_file.errorString()));
        m_size = static_cast<quint64>(m_file.size());
        if (m_size == 0)
            return damaged(tr("the file is empty"));
        // A hundred small pieces are wanted, from all over the file.
        m_bytes = m_file.map(0, m_file.size());
        if (!m_bytes)
            return damaged(tr("the file can't be read: %1").arg(m_file.errorString()));
        if (m_size < SELFMAG || std::memcmp(m_bytes, ELFMAG, SELFMAG) != 0)
            return {};
        FileHeader header;
        if (!readAt(0, &header, sizeof header))
            return damaged(tr("the file is truncated"));
        // The loader says of a machine that it doesn't know that there is no such file.
        const FileHeader &own = ownHeader();
        if (header.e_ident[EI_CLASS] != own.e_ident[EI_CLASS] || header.e_ident[EI_DATA] != own.e_ident[EI_DATA]
            || header.e_machine != own.e_machine)
            return damaged(tr("the file was built for another machine"));
        if (header.e_shoff == 0 || header.e_shnum == 0)
            return {};
        return inspectSections(header);
    }

private:
    static SharedObjectFile damaged(const QString &reason) { return { SharedObjectFile::Damaged, reason }; }

    bool fits(quint64 offset, quint64 size) const { return offset <= m_size && size <= m_size - offset; }

    bool readAt(quint64 offset, void *target, quint64 size) const
    {
        if (!fits(offset, size))
            return false;
        std::memcpy(target, m_bytes + offset, size);
        return true;
    }

    SharedObjectFile inspectSections(const FileHeader &header) const
    {
        if (header.e_shentsize != sizeof(SectionHeader) || header.e_shstrndx >= header.e_shnum)
            return damaged(tr("the section headers are damaged"));
        QVector<SectionHeader> sections(header.e_shnum);
        if (!readAt(header.e_shoff, sections.data(), sizeof(SectionHeader) * static_cast<quint64>(header.e_shnum)))
            return damaged(tr("the file is truncated"));
        for (const SectionHeader &section : qAsConst(sections)) {
            if (section.sh_type != SHT_NOBITS && section.sh_type != SHT_NULL
                && !fits(section.sh_offset, section.sh_size))
                return damaged(tr("the file is truncated"));
        }
        const SectionHeader &nameTable = sections.at(header.e_shstrndx);
        if (nameTable.sh_type != SHT_STRTAB)
            return damaged(tr("the section headers are damaged"));
        for (const SectionHeader &section : qAsConst(sections)) {
            if (isMetaData(nameTable, section))
                return { SharedObjectFile::Plugin, {} };
        }
        return {};
    }

    bool isMetaData(const SectionHeader &nameTable, const SectionHeader &section) const
    {
        static constexpr char wanted[] = ".qtmetadata";
        char name[sizeof wanted];
        return section.sh_name < nameTable.sh_size && sizeof name <= nameTable.sh_size - section.sh_name
            && readAt(nameTable.sh_offset + section.sh_name, name, sizeof name)
            && std::memcmp(name, wanted, sizeof wanted) == 0;
    }

    QFile m_file;
    const uchar *m_bytes = nullptr; ///< the whole file, mapped
    quint64 m_size = 0;             ///< bytes
};

} // namespace

SharedObjectFile SharedObjectFile::inspect(const QString &path)
{
    return Inspector(path).inspect();
}

} // namespace ExtensionSystem
