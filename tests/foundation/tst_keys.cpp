#include "foundation/ideSystem_keys.h"
#include "foundation/ideSystem_objparams.h"

#include <QLabel>
#include <QTest>

#include <tuple>

using namespace kv;
using namespace Qt::StringLiterals;

class tst_Keys : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lookup()
    {
        TKeyList list;
        QString called;
        // The method found, followed by the state it leads to when that is not 0.
        const auto find = [&](int Key, Qt::KeyboardModifiers Shift, int State) -> QString {
            const TKeyData *data = list.FindKeyData(Key, Shift, qint8(State));
            if (!data)
                return QString();
            data->Method();
            return data->NextState ? called + u' ' + QString::number(data->NextState) : called;
        };
        const Qt::KeyboardModifiers ctrl(Qt::ControlModifier);
        list.AddSimpleKey(Qt::Key_K, ctrl, [&] { called = u"first"_s; });
        list.AddSimpleKey(Qt::Key_K, ctrl, [&] { called = u"second"_s; });
        list.AddKey(Qt::Key_K, ctrl, [&] { called = u"prefix"_s; }, 5, 7);
        list.AddAllKey(Qt::Key_Escape, Qt::NoModifier, [&] { called = u"escape"_s; });
        // One after the other, so that a kept answer must tell the queries apart.
        const std::tuple<int, Qt::KeyboardModifiers, int, const char *> rows[] = {
            {Qt::Key_K, ctrl, 5, "prefix 7"},                      // a state of its own
            {Qt::Key_K, ctrl, 7, ""},                              // no entry in that state
            {Qt::Key_Escape, {}, 7, "escape"},                     // an entry for every state
            {Qt::Key_K, ctrl | Qt::ShiftModifier, 0, ""},          // modifiers compare exactly
            {Qt::Key_K, ctrl | Qt::KeypadModifier, 0, "second"},   // keypad makes no other key
            {Qt::Key_K, ctrl, 0, "second"},                        // the entry added last wins
        };
        for (const auto &[key, shift, state, found] : rows)
            QCOMPARE(find(key, shift, state), QString::fromLatin1(found));
        // Any change to the list forgets the kept answer.
        const qsizetype third = list.AddSimpleKey(Qt::Key_K, ctrl, [&] { called = u"third"_s; });
        QCOMPARE(find(Qt::Key_K, ctrl, 0), QStringLiteral("third"));
        list.Delete(third);
        QCOMPARE(find(Qt::Key_K, ctrl, 0), QStringLiteral("second"));
        list.Clear();
        QCOMPARE(find(Qt::Key_K, ctrl, 0), QString());
    }

    // QLabel derives from QFrame, which derives from QWidget.
    void mappingsByClassAndName()
    {
        const TKeyboardInitProc classic = [](QObject *) {};
        const TKeyboardInitProc brief = [](QObject *) {};
        const TKeyboardInitProc labelClassic = [](QObject *) {};
        RegisterKeyboardInitProc(&QFrame::staticMetaObject, QStringLiteral("Classic"), classic);
        RegisterKeyboardInitProc(&QFrame::staticMetaObject, QStringLiteral("Brief"), brief);
        RegisterKeyboardInitProc(&QLabel::staticMetaObject, QStringLiteral("Classic"), labelClassic);
        // A mapping for a base class serves its descendants; the first registration wins.
        QVERIFY(GetKeyboardInitProc(&QLabel::staticMetaObject, QStringLiteral("brief")) == brief);
        QVERIFY(GetKeyboardInitProc(&QLabel::staticMetaObject, QStringLiteral("CLASSIC")) == classic);
        QVERIFY(!GetKeyboardInitProc(&QWidget::staticMetaObject, QStringLiteral("Classic")));
        FinalizeObjectParamList();
    }
};

QTEST_MAIN(tst_Keys)
#include "tst_keys.moc"
