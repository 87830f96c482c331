#include "foundation/ideSystem_verbs.h"

#include "foundation/ideSystem_messageanswer.h"
#include "foundation/ideSystem_messages.h"
#include "foundation/ideSystem_notifiers.h"
#include "platform/kvEditorGroups.h"
#include "platform/kvException.h"

#include <QCheckBox>
#include <QMenu>
#include <QPushButton>
#include <QTest>
#include <QToolButton>

#include <stdexcept>

using namespace kv;
using namespace Qt::StringLiterals;

namespace probe {

int ExecCalls = 0;
int UpdateCountInExec = -1;

void StateOpen(TVerbStates &States)
{
    States |= vsChecked;
}
void ExecOpen()
{
    ++ExecCalls;
    UpdateCountInExec = IDEUpdateCount;
}
void StateOther(TVerbStates &States)
{
    States &= ~vsEnabled;
}
void ExecOther() {}
void ExecFailing()
{
    throw std::runtime_error("verb failed");
}

void AssignButton(QObject *, TVerbListItem *) {}
void AssignPushButton(QObject *, TVerbListItem *) {}

// Logs the IDE update messages.
class TIDELog : public TMessageAnswer
{
public:
    void Dispatch(TMessage &Message) override
    {
        switch (Message.Msg) {
        case CM_IDEBEGINUPDATE:
            Log.append(u"begin"_s);
            break;
        case CM_IDEENDUPDATE:
            Log.append(u"end"_s);
            break;
        case CM_IDECHANGED:
            Log.append(u"changed"_s);
            break;
        default:
            break;
        }
    }
    QStringList Log;
};

} // namespace probe

using namespace probe;

class tst_Verbs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void registerAndLookUp();
    void registrationsAnnounceOneChange();
    void callVerbByName();
    void assignProcByAncestorClass();
    void verbsOfAFreedGroup();
};

void tst_Verbs::cleanup()
{
    FinalizeObjectParamList();
    ExecCalls = 0;
    UpdateCountInExec = -1;
}

void tst_Verbs::registerAndLookUp()
{
    TObjectParamListItem *open = RegisterVerb(u"File.Open"_s, &StateOpen, &ExecOpen);
    TObjectParamListItem *bare = RegisterVerb(u"Edit.Bare"_s, nullptr, nullptr);
    RegisterVerb(u"FILE.OPEN"_s, &StateOther, &ExecOther); // a second registration of the name
    QCOMPARE(open->GetClassPtr(), &TVerbObject::staticMetaObject);
    QCOMPARE(open->GetParamByName(SVerbNameParam), QVariant(u"File.Open"_s));
    QCOMPARE(bare->GetParamByName(SVerbGetStateParam), QVariant(qlonglong(0)));
    QCOMPARE(bare->GetParamByName(SVerbExecuteParam), QVariant(qlonglong(0)));

    struct TCase
    {
        QString name;
        TObjectParamListItem *expected;
    };
    const TCase cases[] = {
        {u"File.Open"_s, open},
        {u"file.open"_s, open}, // letter case does not matter; the first registration wins
        {u"fILE.oPEN"_s, open},
        {u"File.Ope"_s, nullptr},   // names compare whole
        {u"File.Open "_s, nullptr}, // and as given
        {u"Edit.Bare"_s, bare},
        {QString(), nullptr},
    };
    for (const TCase &c : cases) {
        const auto sentinelState = reinterpret_cast<TVerbStateProc>(&StateOther);
        TVerbStateProc state = sentinelState;
        TVerbExecProc exec = &ExecFailing;
        TObjectParamListItem *found = GetVerbProcAddr(c.name, state, exec);
        QVERIFY2(found == c.expected, qPrintable(c.name));
        if (found == open) {
            QVERIFY(state == &StateOpen);
            QVERIFY(exec == &ExecOpen);
        } else if (found == bare) {
            QVERIFY(state == nullptr);
            QVERIFY(exec == nullptr);
        } else {
            // Not found: the variables keep what they held.
            QVERIFY2(state == sentinelState && exec == &ExecFailing, qPrintable(c.name));
        }
    }

    // The state procedure found is the registered one, and works as such.
    TVerbStateProc state = nullptr;
    TVerbExecProc exec = nullptr;
    GetVerbProcAddr(u"file.OPEN"_s, state, exec);
    TVerbStates states = vsVisible | vsEnabled;
    state(states);
    QCOMPARE(states, TVerbStates(vsVisible | vsEnabled | vsChecked));

    QVERIFY_THROWS_EXCEPTION(Exception, RegisterVerb(QString(), &StateOpen, &ExecOpen));
    QCOMPARE(ObjectParamList().Count(), 3);
}

void tst_Verbs::registrationsAnnounceOneChange()
{
    TIDELog ide;
    RegisterVerb(u"One"_s, nullptr, &ExecOpen);
    QCOMPARE(ide.Log, QStringList{u"changed"_s});

    ide.Log.clear();
    RegisterVerbArray({{u"A"_s, &StateOpen, &ExecOpen}, {u"B"_s, nullptr, nullptr}, {u"C"_s, &StateOther, &ExecOther}});
    QCOMPARE(ide.Log, (QStringList{u"begin"_s, u"end"_s, u"changed"_s}));
    const QList<TObjectParamListItem *> verbs = GetItemsEx(&TVerbObject::staticMetaObject);
    QCOMPARE(verbs.size(), 4);
    QCOMPARE(verbs[1]->GetParamByName(SVerbNameParam), QVariant(u"A"_s));
    QCOMPARE(verbs[3]->GetParamByName(SVerbNameParam), QVariant(u"C"_s));

    // Inside an open bracket nothing is announced until it closes.
    ide.Log.clear();
    IDEBeginUpdate();
    RegisterVerbArray({{u"D"_s, nullptr, nullptr}});
    RegisterVerb(u"E"_s, nullptr, nullptr);
    QCOMPARE(ide.Log, QStringList{u"begin"_s});
    IDEEndUpdate();
    QCOMPARE(ide.Log, (QStringList{u"begin"_s, u"end"_s, u"changed"_s}));

    // A bad element: the ones before it stay, the bracket closes, the error passes on.
    ide.Log.clear();
    QVERIFY_THROWS_EXCEPTION(Exception, RegisterVerbArray({{u"F"_s, nullptr, nullptr}, {QString(), nullptr, nullptr},
                                                           {u"G"_s, nullptr, nullptr}}));
    QCOMPARE(IDEUpdateCount, 0);
    QCOMPARE(ide.Log, (QStringList{u"begin"_s, u"end"_s, u"changed"_s}));
    TVerbStateProc state = nullptr;
    TVerbExecProc exec = nullptr;
    QVERIFY(GetVerbProcAddr(u"F"_s, state, exec));
    QVERIFY(!GetVerbProcAddr(u"G"_s, state, exec));
}

void tst_Verbs::callVerbByName()
{
    RegisterVerb(u"File.Open"_s, &StateOpen, &ExecOpen);
    RegisterVerb(u"File.Nothing"_s, &StateOpen, nullptr);
    RegisterVerb(u"File.Fail"_s, nullptr, &ExecFailing);
    TIDELog ide;

    CallVerbByName(u"FILE.open"_s);
    QCOMPARE(ExecCalls, 1);
    QCOMPARE(UpdateCountInExec, 0); // no bracket around a call by name
    QVERIFY(ide.Log.isEmpty());

    CallVerbByName(u"File.Nothing"_s);
    CallVerbByName(u"File.Missing"_s);
    QCOMPARE(ExecCalls, 1);
    QVERIFY_THROWS_EXCEPTION(std::runtime_error, CallVerbByName(u"file.fail"_s));
}

void tst_Verbs::assignProcByAncestorClass()
{
    RegisterVerb(u"File.Open"_s, nullptr, nullptr);
    RegisterClassExt(&QWidget::staticMetaObject, {{"Other", 1}}); // not an assign registration
    TObjectParamListItem *buttons = RegisterAssignVerbProc(&QAbstractButton::staticMetaObject, &AssignButton);
    TObjectParamListItem *pushButtons = RegisterAssignVerbProc(&QPushButton::staticMetaObject, &AssignPushButton);
    QCOMPARE(buttons->GetParamByName(SAssignVerbParam), QVariant(QString()));

    struct TCase
    {
        const char *name;
        const QMetaObject *cls;
        TAssignVerbProc proc;
        TObjectParamListItem *registration;
    };
    const TCase cases[] = {
        {"the registered class", &QAbstractButton::staticMetaObject, &AssignButton, buttons},
        {"a descendant", &QToolButton::staticMetaObject, &AssignButton, buttons},
        {"a deeper descendant", &QCheckBox::staticMetaObject, &AssignButton, buttons},
        // The earlier registration for an ancestor wins over a later one for the class.
        {"first registration wins", &QPushButton::staticMetaObject, &AssignButton, buttons},
        {"an ancestor is not served", &QWidget::staticMetaObject, nullptr, nullptr},
        {"an unrelated class", &QMenu::staticMetaObject, nullptr, nullptr},
        {"verb entries are no binders", &TVerbObject::staticMetaObject, nullptr, nullptr},
        {"null class", nullptr, nullptr, nullptr},
    };
    for (const TCase &c : cases) {
        TObjectParamListItem *registration = pushButtons;
        QVERIFY2(GetAssignVerbProc(c.cls, &registration) == c.proc, c.name);
        QVERIFY2(registration == c.registration, c.name);
    }

    // Once the ancestor's binder is gone, the class's own serves.
    UnRegisterClassExt(&QAbstractButton::staticMetaObject);
    QVERIFY(GetAssignVerbProc(&QPushButton::staticMetaObject) == &AssignPushButton);
    QVERIFY(GetAssignVerbProc(&QToolButton::staticMetaObject) == nullptr);

    QVERIFY_THROWS_EXCEPTION(Exception, RegisterAssignVerbProc(nullptr, &AssignButton));
    QVERIFY_THROWS_EXCEPTION(Exception, RegisterAssignVerbProc(&QMenu::staticMetaObject, nullptr));
}

void tst_Verbs::verbsOfAFreedGroup()
{
    RegisterVerb(u"Kept"_s, nullptr, &ExecOpen);
    const int package = NewEditorGroup();
    TObjectParamListItem *verb = RegisterVerb(u"Package.Verb"_s, nullptr, &ExecOpen);
    QCOMPARE(verb->Group(), package);
    FreeEditorGroup(package);

    TVerbStateProc state = nullptr;
    TVerbExecProc exec = nullptr;
    QVERIFY(!GetVerbProcAddr(u"Package.Verb"_s, state, exec));
    CallVerbByName(u"Package.Verb"_s);
    QCOMPARE(ExecCalls, 0);
    CallVerbByName(u"Kept"_s);
    QCOMPARE(ExecCalls, 1);
}

QTEST_GUILESS_MAIN(tst_Verbs)
#include "tst_verbs.moc"
