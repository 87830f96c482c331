#include "platform/kvDataModule.h"
#include "platform/kvException.h"
#include "platform/kvOwner.h"
#include "tests/platform/editortests.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QMenu>
#include <QPushButton>
#include <QTest>

#include "tests/testsupport.h"

#include <memory>

using namespace kv;
using kv::test::ErrorOf;
using kv::test::Make;
using namespace Qt::StringLiterals;

namespace {

// The named ones: widgets hold unnamed parts of their own (a menu's own action).
QStringList Names(const QList<QObject *> &objects)
{
    QStringList names;
    for (QObject *obj : objects) {
        if (!obj->objectName().isEmpty())
            names.append(obj->objectName());
    }
    return names;
}

// Form1 { Panel1 { Button1 }, Menu1 (popup) { Action1 }, Dialog1 (window) { Button2 } }, and
// DataModule1 { Table1 { Field1 } }.
struct TFixture
{
    TFixture()
    {
        form = std::make_unique<QWidget>();
        form->setObjectName(u"Form1"_s);
        panel = Make<QWidget>(form.get(), u"Panel1"_s);
        button = Make<QPushButton>(panel, u"Button1"_s);
        action = Make<QAction>(Make<QMenu>(form.get(), u"Menu1"_s), u"Action1"_s);
        dialog = Make<QDialog>(form.get(), u"Dialog1"_s);
        dialogButton = Make<QPushButton>(dialog, u"Button2"_s);
        module = std::make_unique<TDataModule>();
        module->setObjectName(u"DataModule1"_s);
        field = Make<QObject>(Make<QObject>(module.get(), u"Table1"_s), u"Field1"_s);
    }

    std::unique_ptr<QWidget> form;
    QWidget *panel;
    QPushButton *button;
    QAction *action;
    QDialog *dialog;
    QPushButton *dialogButton;
    std::unique_ptr<TDataModule> module;
    QObject *field;
};

} // namespace

class tst_Owner : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ownersAndOwnedComponents()
    {
        TFixture f;
        // What a component belongs to is its nearest root above: the application, a form, a
        // dialog or a data module.
        QCOMPARE(GetOwner(f.button), f.form.get());
        // The popup menu is no root: what it holds belongs to the form.
        QCOMPARE(GetOwner(f.action), f.form.get());
        QCOMPARE(GetOwner(f.dialogButton), f.dialog);
        QCOMPARE(GetOwner(f.field), f.module.get());
        QCOMPARE(GetOwner(f.form.get()), qApp);
        QCOMPARE(GetOwner(qApp), nullptr);
        QCOMPARE(GetOwner(nullptr), nullptr);

        QObject loose; // a parentless plain object is no root: nothing owns what it holds
        QCOMPARE(GetOwner(Make<QObject>(&loose, u"Inside"_s)), nullptr);

        // A data module inside a form is a root of its own, owned by the form.
        QCOMPARE(GetOwner(new TDataModule(f.panel)), f.form.get());

        // Depth first in child order; a nested root is listed, what it owns is its own.
        QCOMPARE(Names(OwnedComponents(f.form.get())),
                 (QStringList{u"Panel1"_s, u"Button1"_s, u"Menu1"_s, u"Action1"_s, u"Dialog1"_s}));
        QCOMPARE(OwnedComponents(f.panel), QList<QObject *>());
        QCOMPARE(OwnedComponents(nullptr), QList<QObject *>());
        int visited = 0;
        QVERIFY(!ForEachOwnedComponent(f.form.get(), [&visited](QObject *) { return ++visited < 2; }));
        QCOMPARE(visited, 2);

        // The application owns its children and the top roots, once each, nothing below them.
        auto *appChild = Make<QObject>(qApp, u"AppChild"_s);
        const QList<QObject *> owned = OwnedComponents(qApp);
        QVERIFY(owned.contains(appChild));
        QCOMPARE(owned.count(f.form.get()), 1);
        QVERIFY(owned.contains(f.module.get()));
        for (QObject *notOwned : {static_cast<QObject *>(f.button), static_cast<QObject *>(f.dialog), f.field})
            QVERIFY(!owned.contains(notOwned));
        QCOMPARE(FindComponent(qApp, u"form1"), f.form.get());
        delete appChild;

        QCOMPARE(FindComponent(f.form.get(), u"button1"), f.button);
        QCOMPARE(FindComponent(f.form.get(), u"Button2"), nullptr);
        QCOMPARE(FindComponent(f.form.get(), u""), nullptr);

        // Components that ask about their owner while their root is being destroyed.
        int asked = 0;
        const auto ask = [&asked](QObject *dying) {
            OwnedComponents(GetOwner(dying));
            ++asked;
        };
        connect(f.button, &QObject::destroyed, ask);
        connect(f.field, &QObject::destroyed, ask);
        f.form.reset();
        f.module.reset();
        QCOMPARE(asked, 2);
    }

    void setComponentName()
    {
        for (const char *valid : {"Button1", "_x_2"})
            QVERIFY2(IsValidIdent(QString::fromUtf8(valid)), valid);
        for (const char *invalid : {"1Button", "Ok Button", "Form1.Button1", "Größe", ""})
            QVERIFY2(!IsValidIdent(QString::fromUtf8(invalid)), invalid);

        TFixture f;
        SetComponentName(f.panel, u"Panel2"_s);
        QCOMPARE(f.panel->objectName(), u"Panel2"_s);
        // Another case of its own name is no clash.
        SetComponentName(f.panel, u"PANEL2"_s);
        QCOMPARE(f.panel->objectName(), u"PANEL2"_s);
        QCOMPARE(ErrorOf([&] { SetComponentName(f.panel, u"button1"_s); }),
                 u"A component named button1 already exists"_s);
        QCOMPARE(ErrorOf([&] { SetComponentName(f.panel, u"1st"_s); }), u"'1st' is not a valid component name"_s);
        QCOMPARE(f.panel->objectName(), u"PANEL2"_s);
        // Names are unique per owner: another root may reuse one.
        SetComponentName(f.dialogButton, u"Button1"_s);
        QCOMPARE(f.dialogButton->objectName(), u"Button1"_s);
        SetComponentName(f.panel, QString());
        QCOMPARE(f.panel->objectName(), QString());
    }
};

QTEST_MAIN(tst_Owner)
#include "tst_owner.moc"
