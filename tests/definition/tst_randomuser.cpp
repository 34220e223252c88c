#include "definitionpage.h"

#include "definition/metadialog.h"

#include <QComboBox>
#include <QLineEdit>
#include <QRandomGenerator>
#include <QToolButton>

using namespace DefinitionTesting;

namespace {

/// Somebody who clicks, types, creates and deletes on the definition page without any plan.
class RandomUser final
{
public:
    RandomUser(Page &page, quint32 seed) : m_page(page), m_random(seed) { }

    void step()
    {
        switch (m_random.bounded(16)) {
        case 0:
        case 1:
        case 2:
            if (QTreeWidgetItem *item = anyRow())
                m_page.click(item);
            break;
        case 3:
            chooseFromMenu();
            break;
        case 4:
        case 5:
            clickCell(m_page.attributes());
            break;
        case 6:
            clickCell(m_page.entries());
            break;
        case 7:
            m_page.press(m_random.bounded(3) ? "pushButton_add_attr" : "pushButton_del_attr");
            break;
        case 8:
            m_page.press(m_random.bounded(3) ? "pushButton_add_enum" : "pushButton_delete_enmu");
            break;
        case 9:
            addProperty();
            break;
        case 10:
        case 11:
            editBasicInfo();
            break;
        case 12:
        case 13:
            editAttribute();
            break;
        case 14:
            key();
            break;
        case 15:
            if (m_random.bounded(40) == 0)
                (void)m_page.manager.save();
            break;
        }
    }

private:
    QTreeWidgetItem *anyRow()
    {
        QTreeWidgetItem *item = m_page.tree()->topLevelItem(0);
        while (item->childCount() > 0 && m_random.bounded(3) != 0)
            item = item->child(m_random.bounded(item->childCount()));
        return item;
    }

    void clickCell(QTableWidget *table)
    {
        if (table->rowCount() > 0 && table->isVisible())
            m_page.click(table, m_random.bounded(table->rowCount()), m_random.bounded(table->columnCount()));
    }

    void chooseFromMenu()
    {
        // The page grows until there is a lot to do, and then stays about as large.
        const bool large = m_page.tree()->topLevelItem(0)->childCount() > 12;
        static const char *const choices[] = { "Create Point", "Create Sub Point", "Delete Point" };
        m_page.menu(anyRow(), s(choices[large ? 2 : m_random.bounded(3)]));
    }

    void addProperty()
    {
        auto *button = m_page.find<QToolButton>("addPropertyButton");
        Q_EMIT button->menu()->aboutToShow();
        const QList<QAction *> actions = button->menu()->actions();
        if (!actions.isEmpty())
            actions.at(m_random.bounded(actions.size()))->trigger();
    }

    QVariant anyValue()
    {
        switch (m_random.bounded(6)) {
        case 0:
            return m_random.bounded(8);
        case 1:
            return QString();
        case 2:
            return s("SubPoint");
        case 3:
            return s("a<b&\"c\" ü\n");
        case 4:
            return true;
        default:
            return s("name") + QString::number(m_random.bounded(4));
        }
    }

    void editBasicInfo()
    {
        const QList<PropertyItem> records = m_page.basicInfo()->properties();
        if (records.isEmpty())
            return;
        const QString name = records.at(m_random.bounded(records.size())).name();
        if (QWidget *editor = m_page.basicInfo()->editorFor(name); editor && m_random.bounded(2)) {
            if (auto *line = editor->findChild<QLineEdit *>()) {
                line->setFocus();
                QTest::keyClicks(line, s("x1"));
                QTest::keyClick(line, m_random.bounded(2) ? Qt::Key_Return : Qt::Key_Tab);
                return;
            }
        }
        Q_EMIT m_page.basicInfo()->propertyChanged(name, anyValue());
    }

    void editAttribute()
    {
        if (m_page.editInfo()->isHidden())
            return;
        const QList<PropertyItem> records = m_page.editInfo()->properties();
        if (records.isEmpty())
            return;
        const QString name = records.at(m_random.bounded(records.size())).name();
        if (m_random.bounded(3) == 0 && m_page.editInfo()->openEditor(name)) {
            if (QWidget *focus = QApplication::focusWidget()) {
                QTest::keyClicks(focus, s("y2"));
                QTest::keyClick(focus, m_random.bounded(2) ? Qt::Key_Return : Qt::Key_Escape);
            }
            return;
        }
        const QStringList types = m_page.manager.attributeTypes();
        Q_EMIT m_page.editInfo()->propertyChanged(
            name, name == s("type") ? QVariant(types.at(m_random.bounded(types.size()))) : anyValue());
    }

    void key()
    {
        static const Qt::Key keys[]
            = { Qt::Key_Insert, Qt::Key_Delete, Qt::Key_F2, Qt::Key_Down, Qt::Key_Up, Qt::Key_Home };
        QWidget *const targets[] = { m_page.tree(), m_page.attributes(), m_page.entries() };
        QWidget *target = targets[m_random.bounded(3)];
        if (!target->isVisible())
            return;
        target->setFocus();
        QTest::keyClick(target, keys[m_random.bounded(6)]);
    }

    Page &m_page;
    QRandomGenerator m_random;
};

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
}

} // namespace

class TestRandomUser : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void definitionPage();
};

/// EXTPOINT_RANDOM_STEPS in the environment asks for more steps than the usual 2,000.
void TestRandomUser::definitionPage()
{
    const int wanted = qEnvironmentVariableIntValue("EXTPOINT_RANDOM_STEPS");
    const int steps = wanted > 0 ? wanted : 2000;
    constexpr int stepsPerSeed = 250;
    for (int seed = 1; seed <= steps / stepsPerSeed; ++seed) {
        Page page(
            "<ExtPointSet><ExtPoint id=\"p\" name=\"P\"><String key=\"s\"/><Enum key=\"e\"><Data key=\"1\" "
            "text=\"one\"/></Enum>"
            "<SubExtPoint key=\"a\" childtype=\"a|b\"/><SubExtPoint "
            "key=\"b\"/></ExtPoint></ExtPointSet><ExtDataSet><ExtData id=\"p\"><A id=\"r\"/></ExtData></ExtDataSet>");
        QVERIFY(QTest::qWaitForWindowActive(page.widget.get()));
        page.manager.startScan(page.path());
        RandomUser user(page, quint32(seed));
        for (int step = 0; step < stepsPerSeed; ++step)
            user.step();
        QVERIFY(page.manager.save());
        const QByteArray saved = contents(page.path());
        SourceDataManager again;
        QVERIFY2(again.load(page.path()), qPrintable(s("seed %1").arg(seed)));
        again.startScan(page.path());
        QVERIFY(again.save());
        QCOMPARE(contents(page.path()), saved);
    }
}

QTEST_MAIN(TestRandomUser)
#include "tst_randomuser.moc"
