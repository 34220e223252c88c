#include "extensionsystem/pluginmanager.h"

#include <QSignalSpy>
#include <QTimer>
#include <QtTest>

#include <memory>

using namespace ExtensionSystem;

class TestObjectPool final : public QObject
{
    Q_OBJECT
private slots:
    void addAndRemove();
    void destroyedElsewhere();
    void lookUpByType();
    void changedByAListener();
    void withoutManager();
    void emptyAfterShutdown();
};

void TestObjectPool::addAndRemove()
{
    PluginManager manager;
    QCOMPARE(PluginManager::instance(), &manager);
    QSignalSpy added(&manager, &PluginManager::objectAdded);
    QSignalSpy removed(&manager, &PluginManager::aboutToRemoveObject);
    QObject first;
    QObject second;
    PluginManager::addObject(&first);
    PluginManager::addObject(&second);
    PluginManager::addObject(&first);
    PluginManager::addObject(nullptr);
    QCOMPARE(PluginManager::allObjects(), (QVector<QObject *> { &first, &second }));
    QCOMPARE(added.size(), 2);
    QCOMPARE(added.at(1).at(0).value<QObject *>(), &second);

    connect(&manager, &PluginManager::aboutToRemoveObject, this,
        [](QObject *obj) { QVERIFY(PluginManager::allObjects().contains(obj)); });
    PluginManager::removeObject(&first);
    PluginManager::removeObject(&first);
    PluginManager::removeObject(nullptr);
    QCOMPARE(PluginManager::allObjects(), QVector<QObject *> { &second });
    QCOMPARE(removed.size(), 1);
    QCOMPARE(removed.at(0).at(0).value<QObject *>(), &first);
}

void TestObjectPool::destroyedElsewhere()
{
    PluginManager manager;
    QSignalSpy removed(&manager, &PluginManager::aboutToRemoveObject);
    QObject stays;
    auto goes = std::make_unique<QObject>();
    PluginManager::addObject(goes.get());
    PluginManager::addObject(&stays);
    goes.reset();
    QCOMPARE(PluginManager::allObjects(), QVector<QObject *> { &stays });
    QCOMPARE(removed.size(), 1);

    // One that was taken out is nobody's business any more.
    auto out = std::make_unique<QObject>();
    PluginManager::addObject(out.get());
    PluginManager::removeObject(out.get());
    out.reset();
    QCOMPARE(removed.size(), 2);
}

void TestObjectPool::lookUpByType()
{
    PluginManager manager;
    QCOMPARE(PluginManager::getObject<QTimer>(), nullptr);
    QObject plain;
    QTimer first;
    QTimer second;
    for (QObject *obj : { &plain, static_cast<QObject *>(&first), static_cast<QObject *>(&second) })
        PluginManager::addObject(obj);
    QCOMPARE(PluginManager::getObject<QTimer>(), &first);
    QCOMPARE(PluginManager::getObjects<QTimer>(), (QVector<QTimer *> { &first, &second }));
    QCOMPARE(PluginManager::getObjects<QObject>().size(), 3);
}

void TestObjectPool::changedByAListener()
{
    PluginManager manager;
    QObject first;
    QObject second;
    QObject third;
    for (QObject *obj : { &first, &second, &third })
        PluginManager::addObject(obj);
    connect(&manager, &PluginManager::aboutToRemoveObject, this, [&](QObject *obj) {
        if (obj == &second)
            PluginManager::removeObject(&first);
    });
    PluginManager::removeObject(&second);
    QCOMPARE(PluginManager::allObjects(), QVector<QObject *> { &third });
}

void TestObjectPool::withoutManager()
{
    QCOMPARE(PluginManager::instance(), nullptr);
    QObject obj;
    PluginManager::addObject(&obj);
    PluginManager::removeObject(&obj);
    QCOMPARE(PluginManager::allObjects(), QVector<QObject *>());
}

void TestObjectPool::emptyAfterShutdown()
{
    PluginManager manager;
    QObject obj;
    PluginManager::addObject(&obj);
    QSignalSpy removed(&manager, &PluginManager::aboutToRemoveObject);
    manager.shutdown();
    QCOMPARE(PluginManager::allObjects(), QVector<QObject *>());
    QCOMPARE(removed.size(), 1);
}

QTEST_GUILESS_MAIN(TestObjectPool)
#include "tst_objectpool.moc"
