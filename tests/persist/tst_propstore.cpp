#include "persist/ideCommon.h"
#include "persist/ideCommon_propstore.h"
#include "persist/ideSystem_registry.h"

#include "foundation/ideConsts.h"
#include "platform/kvDataModule.h"
#include "platform/kvDesignDialogs.h"
#include "platform/kvStreamDefaults.h"
#include "tests/testsupport.h"

#include <QBuffer>
#include <QCloseEvent>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <memory>

using namespace kv;
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
    explicit TStoreForm(const QString &Key, const char *PropList = "", bool RefuseClose = false)
        : Form(RefuseClose ? new TRefusingForm : new QWidget)
        , Edit1(Make<QLineEdit>(Form.get(), QStringLiteral("Edit1")))
        , Edit2(Make<QLineEdit>(Form.get(), QStringLiteral("Edit2")))
        , Store(Make<TKVPropStore>(Form.get(), QStringLiteral("KVPropStore1")))
    {
        Form->setObjectName(QStringLiteral("MainForm"));
        Store->SetKey(Key);
        Store->SetPropList(List(PropList));
    }
    static QStringList List(const char *Entries) { return QString::fromLatin1(Entries).split(u' ', Qt::SkipEmptyParts); }
    void Set(const QString &One, int Length, const QString &Two, const QString &Title)
    {
        Edit1->setText(One);
        Edit1->setMaxLength(Length);
        Edit2->setText(Two);
        Form->setWindowTitle(Title);
    }
    QString State() const
    {
        return QStringLiteral("%1,%2,%3,%4").arg(Edit1->text()).arg(Edit1->maxLength()).arg(Edit2->text(), Form->windowTitle());
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

    void keys()
    {
        TStoreForm form({});
        QCOMPARE(form.Store->GetKey(), QStringLiteral("MainFormKVPropStore1"));
        TKVPropStore loose;
        loose.setObjectName(QStringLiteral("Loose"));
        QCOMPARE(loose.GetKey(), QStringLiteral("Loose"));
        QVERIFY(loose.IgnoreErrors() && loose.StorePos());
    }

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
        TStoreForm form(QStringLiteral("SaveLoad\\") + QString::fromLatin1(QTest::currentDataTag()), qPrintable(saved));
        form.Store->SetStorePos(false);
        form.Set(QStringLiteral("one"), 10, QStringLiteral("two"), QStringLiteral("Main"));
        form.Store->Save();
        form.Set(QStringLiteral("x"), 99, QStringLiteral("y"), QStringLiteral("changed"));
        form.Store->SetPropList(form.List(qPrintable(loaded)));
        form.Store->Load();
        QCOMPARE(form.State(), state);
    }

    // The store saves when the close goes ahead, with the window position when asked to.
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
        const QString key = QStringLiteral("Close\\") + QString::fromLatin1(QTest::currentDataTag());
        TStoreForm form(key, "Edit1.text", refuse);
        form.Store->SetStorePos(storePos);
        form.Form->show();
        QCOMPARE(form.Form->close(), !refuse);
        QCOMPARE(GetRegBufSize(key) > 0, !refuse);
        QCOMPARE(RegValueExists(QStringLiteral("Forms\\") + key + QStringLiteral("\\WinPos")), !refuse && storePos);
    }

    // A form built in code loads when it is first polished, once; a data module saves while
    // it is destroyed, and loads when told it was loaded.
    void loadsWithItsOwner()
    {
        {
            TStoreForm saved(QStringLiteral("Polish"), "Edit1.text");
            saved.Edit1->setText(QStringLiteral("kept"));
            saved.Store->Save();
        }
        TStoreForm form(QStringLiteral("Polish"), "Edit1.text");
        form.Form->ensurePolished();
        QCOMPARE(form.Edit1->text(), QStringLiteral("kept"));
        form.Edit1->setText(QStringLiteral("typed"));
        form.Store->Loaded();
        QCOMPARE(form.Edit1->text(), QStringLiteral("typed"));

        std::unique_ptr<TDataModule> modules[2] = {std::make_unique<TDataModule>(), std::make_unique<TDataModule>()};
        for (auto &module : modules) {
            module->setObjectName(QStringLiteral("Module1"));
            Make<QTimer>(module.get(), QStringLiteral("Timer1"))->setInterval(module == modules[0] ? 1234 : 1);
            Make<TKVPropStore>(module.get(), QStringLiteral("Store"))->SetPropList({QStringLiteral("Timer1.interval")});
        }
        modules[0].reset();
        QVERIFY(GetRegBufSize(QStringLiteral("Module1Store")) > 0);
        modules[1]->findChild<TKVPropStore *>()->Loaded();
        QCOMPARE(modules[1]->findChild<QTimer *>()->interval(), 1234);
    }

    // A handler that does the work itself stops the store. A damaged value is passed over
    // when IgnoreErrors, else asked about: OK goes on, Cancel ends the load with the error.
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
        TStoreForm form(QStringLiteral("Damaged"), "Edit1.text");
        form.Store->SetStorePos(false);
        form.Store->SetIgnoreErrors(ignore);
        QBuffer damaged;
        damaged.open(QIODevice::ReadWrite);
        form.Store->SaveToStream(damaged);
        WriteBufToRegistry(form.Store->GetKey(), damaged.data().chopped(3));
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
        QCOMPARE(GetRegBufSize(form.Store->GetKey()), damaged.size() - 3);
    }

private:
    QTemporaryDir m_config;
};

QTEST_MAIN(tst_PropStore)
#include "tst_propstore.moc"
