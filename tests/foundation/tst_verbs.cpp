#include "foundation/ideSystem_verbs.h"

#include "foundation/ideSystem_messageanswer.h"
#include "foundation/ideSystem_messages.h"
#include "foundation/ideSystem_notifiers.h"
#include "platform/kvEditorGroups.h"
#include "platform/kvException.h"

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

void StateOpen(TVerbStates &) {}
void StateOther(TVerbStates &) {}
void ExecOpen()
{
    ++ExecCalls;
    UpdateCountInExec = IDEUpdateCount;
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
        if (Message.Msg == CM_IDEBEGINUPDATE)
            Log.append(u"begin"_s);
        else if (Message.Msg == CM_IDEENDUPDATE)
            Log.append(u"end"_s);
        else if (Message.Msg == CM_IDECHANGED)
            Log.append(u"changed"_s);
    }
    QStringList Log;
};

} // namespace probe

using namespace probe;

class tst_Verbs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        FinalizeObjectParamList();
        ExecCalls = 0;
        UpdateCountInExec = -1;
    }

    void registerAndLookUp()
    {
        TObjectParamListItem *open = RegisterVerb(u"File.Open"_s, &StateOpen, &ExecOpen);
        TObjectParamListItem *bare = RegisterVerb(u"Edit.Bare"_s, nullptr, nullptr);
        RegisterVerb(u"FILE.OPEN"_s, &StateOther, &ExecOther); // a second registration of the name

        // Names compare whole; when none is found the variables keep what they held.
        TVerbStateProc state = &StateOther;
        TVerbExecProc exec = &ExecFailing;
        QCOMPARE(GetVerbProcAddr(u"File.Ope"_s, state, exec), nullptr);
        QVERIFY(state == &StateOther && exec == &ExecFailing);
        // Letter case does not matter, and the first registration wins.
        QCOMPARE(GetVerbProcAddr(u"fILE.oPEN"_s, state, exec), open);
        QVERIFY(state == &StateOpen && exec == &ExecOpen);
        QCOMPARE(GetVerbProcAddr(u"Edit.Bare"_s, state, exec), bare);
        QVERIFY(state == nullptr && exec == nullptr);

        QVERIFY_THROWS_EXCEPTION(Exception, RegisterVerb(QString(), &StateOpen, &ExecOpen));
        QCOMPARE(ObjectParamList().Count(), 3);
    }

    void registrationsAnnounceOneChange()
    {
        TIDELog ide;
        RegisterVerb(u"One"_s, nullptr, &ExecOpen);
        QCOMPARE(ide.Log, QStringList{u"changed"_s});

        ide.Log.clear();
        RegisterVerbArray({{u"A"_s, &StateOpen, &ExecOpen}, {u"B"_s, nullptr, nullptr},
                           {u"C"_s, &StateOther, &ExecOther}});
        QCOMPARE(ide.Log, (QStringList{u"begin"_s, u"end"_s, u"changed"_s}));
        QCOMPARE(GetItemsEx(&TVerbObject::staticMetaObject).size(), 4);

        // A bad element: the ones before it stay, the bracket closes, the error passes on.
        ide.Log.clear();
        const QList<TVerbData> broken{{u"F"_s, nullptr, nullptr}, {QString(), nullptr, nullptr},
                                      {u"G"_s, nullptr, nullptr}};
        QVERIFY_THROWS_EXCEPTION(Exception, RegisterVerbArray(broken));
        QCOMPARE(IDEUpdateCount, 0);
        QCOMPARE(ide.Log, (QStringList{u"begin"_s, u"end"_s, u"changed"_s}));
        TVerbStateProc state = nullptr;
        TVerbExecProc exec = nullptr;
        QVERIFY(GetVerbProcAddr(u"F"_s, state, exec));
        QVERIFY(!GetVerbProcAddr(u"G"_s, state, exec));
    }

    void callVerbByName()
    {
        RegisterVerb(u"File.Open"_s, &StateOpen, &ExecOpen);
        RegisterVerb(u"File.Nothing"_s, &StateOpen, nullptr);
        RegisterVerb(u"File.Fail"_s, nullptr, &ExecFailing);
        const int package = NewEditorGroup();
        QCOMPARE(RegisterVerb(u"Package.Verb"_s, nullptr, &ExecOpen)->Group(), package);
        FreeEditorGroup(package);
        TIDELog ide;

        CallVerbByName(u"FILE.open"_s);
        QCOMPARE(ExecCalls, 1);
        QCOMPARE(UpdateCountInExec, 0); // no bracket around a call by name
        QVERIFY(ide.Log.isEmpty());

        // A verb without an executor, an unknown one and one of a freed package do nothing.
        CallVerbByName(u"File.Nothing"_s);
        CallVerbByName(u"File.Missing"_s);
        CallVerbByName(u"Package.Verb"_s);
        QCOMPARE(ExecCalls, 1);
        QVERIFY_THROWS_EXCEPTION(std::runtime_error, CallVerbByName(u"file.fail"_s));
    }

    void assignProcByAncestorClass()
    {
        RegisterVerb(u"File.Open"_s, nullptr, nullptr);
        RegisterClassExt(&QWidget::staticMetaObject, {{"Other", 1}}); // not an assign registration
        TObjectParamListItem *buttons = RegisterAssignVerbProc(&QAbstractButton::staticMetaObject, &AssignButton);
        TObjectParamListItem *pushButtons = RegisterAssignVerbProc(&QPushButton::staticMetaObject, &AssignPushButton);

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
            // The earlier registration for an ancestor wins over a later one for the class.
            {"first registration wins", &QPushButton::staticMetaObject, &AssignButton, buttons},
            {"an ancestor is not served", &QWidget::staticMetaObject, nullptr, nullptr},
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
};

QTEST_GUILESS_MAIN(tst_Verbs)
#include "tst_verbs.moc"
