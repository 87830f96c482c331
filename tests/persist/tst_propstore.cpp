#include "persist/ideCommon.h"
#include "persist/ideCommon_propstore.h"
#include "persist/ideSystem_registry.h"

#include "foundation/ideConsts.h"
#include "platform/kvDataModule.h"
#include "platform/kvDesignDialogs.h"
#include "platform/kvStreamDefaults.h"
#include "tests/testsupport.h"

#include <QCloseEvent>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <memory>

using namespace kv;
using namespace Qt::StringLiterals;
using kv::test::ErrorOf;
using kv::test::Make;

namespace {

class TRefusingForm : public QWidget
{
protected:
    void closeEvent(QCloseEvent *Event) override { Event->ignore(); }
};

// A main form with two edits and a store, as a form designer names them.
struct TStoreForm
{
    explicit TStoreForm(const QString &Key, const QString &PropList = {}, bool RefuseClose = false)
        : Form(RefuseClose ? new TRefusingForm : new QWidget)
        , Edit1(Make<QLineEdit>(Form.get(), u"Edit1"_s))
        , Edit2(Make<QLineEdit>(Form.get(), u"Edit2"_s))
        , Store(Make<TKVPropStore>(Form.get(), u"KVPropStore1"_s))
    {
        Form->setObjectName(u"MainForm"_s);
        Store->SetKey(Key);
        SetPropList(PropList);
    }
    void SetPropList(const QString &Entries) { Store->SetPropList(Entries.split(u' ', Qt::SkipEmptyParts)); }
    void Set(const QString &One, int Length, const QString &Two, const QString &Title)
    {
        Edit1->setText(One);
        Edit1->setMaxLength(Length);
        Edit2->setText(Two);
        Form->setWindowTitle(Title);
    }
    QString State() const
    {
        return u"%1,%2,%3,%4"_s.arg(Edit1->text()).arg(Edit1->maxLength()).arg(Edit2->text(), Form->windowTitle());
    }

    std::unique_ptr<QWidget> Form;
    QLineEdit *Edit1, *Edit2;
    TKVPropStore *Store;
};

} // namespace

class tst_PropStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_config.isValid());
        qputenv("XDG_CONFIG_HOME", m_config.path().toLocal8Bit());
        ideCommon::Initialize();
    }
    // The prototypes that measured defaults go with the unit stop.
    void cleanupTestCase() { FinalizeStreamDefaults(); }

    // Records find their groups by component name: a group reads only what both lists name,
    // and a record no group names any more is passed over.
    void saveAndLoad_data()
    {
        QTest::addColumn<QString>("saved");
        QTest::addColumn<QString>("loaded");
        QTest::addColumn<QString>("state");
        QTest::addRow("same list") << "Edit1.text Edit1.maxLength windowTitle" << "Edit1.text Edit1.maxLength windowTitle"
                                   << "one,10,y,Main";
        QTest::addRow("group dropped") << "Edit1.text Edit2.text" << "Edit2.text" << "x,99,two,changed";
        QTest::addRow("property dropped") << "Edit1.text Edit1.maxLength" << "Edit1.maxLength" << "x,10,y,changed";
        QTest::addRow("groups swapped") << "Edit1.text Edit2.text" << "Edit2.text Edit1.text" << "one,99,two,changed";
        QTest::addRow("missing component") << "Gone.text Edit1.text" << "Edit1.text" << "one,99,y,changed";
        QTest::addRow("global path") << "MainForm.Edit2.text" << "MainForm.Edit2.text" << "x,99,two,changed";
    }
    void saveAndLoad()
    {
        QFETCH(QString, saved);
        QFETCH(QString, loaded);
        QFETCH(QString, state);
        TStoreForm form(u"SaveLoad\\"_s + QString::fromLatin1(QTest::currentDataTag()), saved);
        form.Store->SetStorePos(false);
        form.Set(u"one"_s, 10, u"two"_s, u"Main"_s);
        form.Store->Save();
        form.Set(u"x"_s, 99, u"y"_s, u"changed"_s);
        form.SetPropList(loaded);
        form.Store->Load();
        QCOMPARE(form.State(), state);
    }

    // The store saves when the close goes ahead, with the window position unless told otherwise.
    void savesOnClose_data()
    {
        QTest::addColumn<bool>("refuse");
        QTest::addColumn<bool>("storePos");
        QTest::addRow("closed") << false << true;
        QTest::addRow("refused") << true << true;
        QTest::addRow("without position") << false << false;
    }
    void savesOnClose()
    {
        QFETCH(bool, refuse);
        QFETCH(bool, storePos);
        const QString key = u"Close\\"_s + QString::fromLatin1(QTest::currentDataTag());
        TStoreForm form(key, u"Edit1.text"_s, refuse);
        if (!storePos)
            form.Store->SetStorePos(false);
        form.Form->show();
        QCOMPARE(form.Form->close(), !refuse);
        QCOMPARE(GetRegBufSize(key) > 0, !refuse);
        QCOMPARE(RegValueExists(u"Forms\\"_s + key + u"\\WinPos"_s), !refuse && storePos);
    }

    // A form built in code loads when it is first polished, once; a data module saves while
    // it is destroyed, and loads when told it was loaded. Without a key, both go by the owner's
    // name followed by the store's; a store without an owner goes by its own name.
    void loadsWithItsOwner()
    {
        {
            TStoreForm saved({}, u"Edit1.text"_s);
            saved.Edit1->setText(u"kept"_s);
            saved.Store->Save();
        }
        QVERIFY(GetRegBufSize(u"MainFormKVPropStore1"_s) > 0);
        TStoreForm form({}, u"Edit1.text"_s);
        form.Form->ensurePolished();
        QCOMPARE(form.Edit1->text(), u"kept"_s);
        form.Edit1->setText(u"typed"_s);
        form.Store->Loaded();
        QCOMPARE(form.Edit1->text(), u"typed"_s);

        std::unique_ptr<TDataModule> modules[2] = {std::make_unique<TDataModule>(), std::make_unique<TDataModule>()};
        for (auto &module : modules) {
            module->setObjectName(u"Module1"_s);
            Make<QTimer>(module.get(), u"Timer1"_s)->setInterval(module == modules[0] ? 1234 : 1);
            Make<TKVPropStore>(module.get(), u"Store"_s)->SetPropList({u"Timer1.interval"_s});
        }
        modules[0].reset();
        QVERIFY(GetRegBufSize(u"Module1Store"_s) > 0);
        modules[1]->findChild<TKVPropStore *>()->Loaded();
        QCOMPARE(modules[1]->findChild<QTimer *>()->interval(), 1234);
        TKVPropStore loose;
        loose.setObjectName(u"Loose"_s);
        QCOMPARE(loose.GetKey(), u"Loose"_s);
    }

    // A handler that does the work itself stops the store. A damaged value is passed over
    // unless IgnoreErrors is turned off, else asked about: OK goes on, Cancel ends the load with the error.
    // Nothing is written over the damaged value.
    void handlersAndErrors_data()
    {
        QTest::addColumn<bool>("ignore");
        QTest::addColumn<int>("answer"); // -1: the handlers take over
        QTest::addColumn<QString>("error");
        QTest::addRow("handled") << false << -1 << QString();
        QTest::addRow("ignored") << true << int(mrCancel) << QString();
        QTest::addRow("OK") << false << int(mrOk) << QString();
        QTest::addRow("Cancel") << false << int(mrCancel) << LoadStr(SErrBadPropStream);
    }
    void handlersAndErrors()
    {
        QFETCH(bool, ignore);
        QFETCH(int, answer);
        QFETCH(QString, error);
        TStoreForm form(u"Damaged"_s, u"Edit1.text"_s);
        form.Store->SetStorePos(false);
        if (!ignore)
            form.Store->SetIgnoreErrors(false);
        form.Store->Save();
        const QByteArray damaged = ReadLongBufFromRegistry(u"Damaged"_s).chopped(3);
        WriteBufToRegistry(u"Damaged"_s, damaged);
        int asked = 0;
        const auto handle = [&](QObject *Sender, bool *Processed) {
            asked += Sender == form.Store;
            *Processed = true;
        };
        if (answer < 0) {
            connect(form.Store, &TKVPropStore::SaveChanges, this, handle);
            connect(form.Store, &TKVPropStore::LoadChanges, this, handle);
            form.Store->Save();
        }
        const TMessageBoxHook previous = SetMessageBoxHook([&](const QString &, const QString &Caption, TMsgDlgType, TMsgDlgButtons) {
            asked += Caption == LoadStr(SErrReadProps);
            return answer;
        });
        QCOMPARE(ErrorOf([&] { form.Store->Load(); }), error);
        SetMessageBoxHook(previous);
        QCOMPARE(asked, answer < 0 ? 2 : int(!ignore));
        QCOMPARE(ReadLongBufFromRegistry(u"Damaged"_s), damaged);
    }

private:
    QTemporaryDir m_config;
};

QTEST_MAIN(tst_PropStore)
#include "tst_propstore.moc"
