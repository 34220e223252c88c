#include "extensionsystem/dependencyorder.h"

#include <QCoreApplication>

namespace ExtensionSystem {

namespace {

/// A depth-first walk over the plug-ins of one list. Lives for one resolving; changes states and reasons of the list.
class Resolver final
{
    Q_DECLARE_TR_FUNCTIONS(ExtensionSystem::PluginManager)
public:
    explicit Resolver(QVector<PluginInfo> &plugins) : m_plugins(plugins), m_visits(plugins.size(), Unseen)
    {
        m_result.dependencies.resize(plugins.size());
    }

    DependencyOrder resolve()
    {
        for (int i = 0; i < m_plugins.size(); ++i) {
            if (m_plugins.at(i).state == PluginInfo::Read)
                findDependencies(i);
        }
        for (int i = 0; i < m_plugins.size(); ++i)
            visit(i);
        return m_result;
    }

private:
    enum Visit { Unseen, OnPath, Done };

    int find(const QString &name, PluginInfo::State state) const
    {
        for (int i = 0; i < m_plugins.size(); ++i) {
            const PluginInfo &info = m_plugins.at(i);
            if (info.state == state && info.metaData.name.compare(name, Qt::CaseInsensitive) == 0)
                return i;
        }
        return -1;
    }

    void findDependencies(int index)
    {
        PluginInfo &info = m_plugins[index];
        QStringList reasons;
        for (const PluginDependency &dependency : qAsConst(info.metaData.dependencies)) {
            const int found = find(dependency.name, PluginInfo::Read);
            if (found >= 0 && m_plugins.at(found).metaData.provides(dependency.name, dependency.version))
                m_result.dependencies[index].append({ found, dependency.optional });
            else if (!dependency.optional)
                reasons.append(missing(dependency, found));
        }
        info.errorString = reasons.join(QLatin1String("; "));
    }

    QString missing(const PluginDependency &dependency, int found) const
    {
        const QString version = dependency.version.toString();
        if (found >= 0) {
            const PluginMetaData &other = m_plugins.at(found).metaData;
            return tr("\"%1\" %2 is needed, but the one found serves versions %3 to %4")
                .arg(dependency.name, version, other.compatVersion.toString(), other.version.toString());
        }
        const int unusable = find(dependency.name, PluginInfo::Invalid);
        if (unusable >= 0)
            return failedDependencyText(m_plugins.at(unusable).metaData);
        return tr("\"%1\" %2 is needed and was not found").arg(dependency.name, version);
    }

    void visit(int index)
    {
        PluginInfo &info = m_plugins[index];
        if (m_visits.at(index) != Unseen || info.state != PluginInfo::Read || info.hasError())
            return;
        m_visits[index] = OnPath;
        m_path.append(index);
        for (const ResolvedDependency &dependency : qAsConst(m_result.dependencies[index])) {
            if (m_visits.at(dependency.index) == OnPath)
                reportCycle(dependency.index);
            else
                visit(dependency.index);
        }
        m_path.removeLast();
        m_visits[index] = Done;
        settle(index);
    }

    /// Called when everything below @p index is settled, so a dependency's failure is known here.
    void settle(int index)
    {
        PluginInfo &info = m_plugins[index];
        for (const ResolvedDependency &dependency : qAsConst(m_result.dependencies[index])) {
            if (!info.hasError() && !dependency.optional && m_plugins.at(dependency.index).hasError())
                info.errorString = failedDependencyText(m_plugins.at(dependency.index).metaData);
        }
        if (info.hasError())
            return;
        info.state = PluginInfo::Resolved;
        m_result.loadOrder.append(index);
    }

    void reportCycle(int first)
    {
        const QVector<int> members = m_path.mid(m_path.indexOf(first));
        QStringList names;
        for (const int member : members)
            names.append(m_plugins.at(member).metaData.name);
        names.append(names.constFirst());
        for (const int member : members) {
            if (!m_plugins.at(member).hasError())
                m_plugins[member].errorString = tr("dependency cycle: %1").arg(names.join(QLatin1String(" -> ")));
        }
    }

    QVector<PluginInfo> &m_plugins;
    QVector<Visit> m_visits;
    QVector<int> m_path;
    DependencyOrder m_result;
};

} // namespace

DependencyOrder resolveDependencies(QVector<PluginInfo> &plugins)
{
    return Resolver(plugins).resolve();
}

QString failedDependencyText(const PluginMetaData &dependency)
{
    return QCoreApplication::translate("ExtensionSystem::PluginManager", "\"%1\" is needed and could not be started")
        .arg(dependency.name);
}

} // namespace ExtensionSystem
