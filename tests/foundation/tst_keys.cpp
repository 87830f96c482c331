#include "foundation/ideSystem_keys.h"
#include "foundation/ideSystem_objparams.h"

#include <QTest>
#include <QWidget>

using namespace kv;

namespace {

class TBaseControl : public QWidget
{
    Q_OBJECT
};

class TDerivedControl : public TBaseControl
{
    Q_OBJECT
};

void ClassicKeys(QObject *) {}
void BriefKeys(QObject *) {}
void DerivedClassicKeys(QObject *) {}

} // namespace

class tst_Keys : public QObject
{
    Q_OBJECT

    TKeyList m_list;
    QString m_called;

    TKeyboardMethod Tag(const char *Name)
    {
        return [this, Name] { m_called = QString::fromLatin1(Name); };
    }

    QString Lookup(int Key, Qt::KeyboardModifiers Shift, qint8 State)
    {
        m_called.clear();
        if (const TKeyData *data = m_list.FindKeyData(Key, Shift, State))
            data->Method();
        return m_called;
    }

private Q_SLOTS:
    void init()
    {
        m_list.Clear();
        m_list.AddSimpleKey(Qt::Key_K, Qt::ControlModifier, Tag("first"));
        m_list.AddSimpleKey(Qt::Key_K, Qt::ControlModifier, Tag("second"));
        m_list.AddKey(Qt::Key_K, Qt::ControlModifier, Tag("prefix"), 5, 7);
        m_list.AddAllKey(Qt::Key_Escape, Qt::NoModifier, Tag("escape"));
    }

    void lookup_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<Qt::KeyboardModifiers>("shift");
        QTest::addColumn<int>("state");
        QTest::addColumn<QString>("found");
        QTest::newRow("the entry added last wins") << int(Qt::Key_K) << Qt::KeyboardModifiers(Qt::ControlModifier) << 0 << "second";
        QTest::newRow("state of its own") << int(Qt::Key_K) << Qt::KeyboardModifiers(Qt::ControlModifier) << 5 << "prefix";
        QTest::newRow("no entry in that state") << int(Qt::Key_K) << Qt::KeyboardModifiers(Qt::ControlModifier) << 7 << "";
        QTest::newRow("modifiers compare exactly") << int(Qt::Key_K) << Qt::KeyboardModifiers(Qt::ControlModifier | Qt::ShiftModifier) << 0 << "";
        QTest::newRow("keypad makes no other key") << int(Qt::Key_K) << Qt::KeyboardModifiers(Qt::ControlModifier | Qt::KeypadModifier) << 0 << "second";
        QTest::newRow("every state, 0") << int(Qt::Key_Escape) << Qt::KeyboardModifiers() << 0 << "escape";
        QTest::newRow("every state, 7") << int(Qt::Key_Escape) << Qt::KeyboardModifiers() << 7 << "escape";
    }
    void lookup()
    {
        QFETCH(int, key);
        QFETCH(Qt::KeyboardModifiers, shift);
        QFETCH(int, state);
        QTEST(Lookup(key, shift, qint8(state)), "found");
        const TKeyData *data = m_list.FindKeyData(key, shift, qint8(state));
        if (data && state == 5)
            QCOMPARE(data->NextState, 7);
    }

    // The last answer is kept per query, and any change to the list forgets it.
    void changesAreSeenAtOnce()
    {
        QCOMPARE(Lookup(Qt::Key_K, Qt::ControlModifier, 0), QStringLiteral("second"));
        QCOMPARE(Lookup(Qt::Key_K, Qt::ControlModifier, 5), QStringLiteral("prefix"));
        const qsizetype third = m_list.AddSimpleKey(Qt::Key_K, Qt::ControlModifier, Tag("third"));
        QCOMPARE(Lookup(Qt::Key_K, Qt::ControlModifier, 0), QStringLiteral("third"));
        m_list.Delete(third);
        QCOMPARE(Lookup(Qt::Key_K, Qt::ControlModifier, 0), QStringLiteral("second"));
        m_list.Clear();
        QCOMPARE(Lookup(Qt::Key_K, Qt::ControlModifier, 0), QString());
    }

    void mappingsByClassAndName()
    {
        RegisterKeyboardInitProc(&TBaseControl::staticMetaObject, QStringLiteral("Classic"), ClassicKeys);
        RegisterKeyboardInitProc(&TBaseControl::staticMetaObject, QStringLiteral("Brief"), BriefKeys);
        RegisterKeyboardInitProc(&TDerivedControl::staticMetaObject, QStringLiteral("Classic"), DerivedClassicKeys);
        // A mapping for a base class serves its descendants; the first registration wins.
        QVERIFY(GetKeyboardInitProc(&TDerivedControl::staticMetaObject, QStringLiteral("brief")) == &BriefKeys);
        QVERIFY(GetKeyboardInitProc(&TDerivedControl::staticMetaObject, QStringLiteral("CLASSIC")) == &ClassicKeys);
        QVERIFY(!GetKeyboardInitProc(&QWidget::staticMetaObject, QStringLiteral("Classic")));
        QVERIFY(!GetKeyboardInitProc(&TBaseControl::staticMetaObject, QStringLiteral("Epsilon")));
        FinalizeObjectParamList();
    }
};

QTEST_MAIN(tst_Keys)
#include "tst_keys.moc"
