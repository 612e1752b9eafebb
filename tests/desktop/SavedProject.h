// SPDX-License-Identifier: GPL-3.0-or-later
// The main window with a project in a folder of its own.
#pragma once

#include "Session.h"
#include "views/frmFitManager.h"

#include <QFile>
#include <QPushButton>
#include <QTableWidget>
#include <QTemporaryDir>

/// The imported sample, open and saved as "stock.vl3" in a folder of its own.
struct Saved : Session {
    Saved()
    {
        user.filesToSave = {Path("stock.vl3")};
        Open();
        user.messages.clear();
        user.asked.clear();
    }
    std::string Path(const char* name) const
    {
        return folder.filePath(QString::fromLatin1(name)).toStdString();
    }
    QByteArray Bytes(const char* name = "stock.vl3") const
    {
        QFile file(QString::fromStdString(Path(name)));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    bool Dirty() { return window.objData().IsDirty(); }
    void Reopen() { window.OpenPath(QString::fromStdString(Path("stock.vl3"))); }
    /// A change of the data set that no other rule has anything to do with.
    void Change(const char* description = "Changed")
    {
        user.inputs = {std::string(description)};
        Entry("mnuFileDescription")->trigger();
    }
    frmFitManager* Manager() { return window.findChild<frmFitManager*>(); }
    QPushButton* Button(const char* name)
    {
        return Manager()->findChild<QPushButton*>(QString::fromLatin1(name));
    }
    QTableWidget* Fits() { return Manager()->findChild<QTableWidget*>("grdFits"); }
    QString Count() { return Manager()->findChild<QLabel*>("lblMsg")->text(); }
    void Log(const char* name)
    {
        Entry("mnuFitManager")->trigger();
        user.inputs = {std::string(name)};
        Button("cmdAdd")->click();
    }
    void TakeFolderAway() { QVERIFY(QFile::rename(folder.path(), folder.path() + "_gone")); }
    void BringFolderBack() { QVERIFY(QFile::rename(folder.path() + "_gone", folder.path())); }

    QTemporaryDir folder;
};

/// The main function of a program of such tests.
template <typename Test>
int RunAmongOwnWorkingCopies(int argc, char* argv[])
{
    // A folder for working copies that no other program and no other test looks into.
    const QTemporaryDir temporary;
    qputenv("TMPDIR", temporary.path().toLocal8Bit());
    QApplication application(argc, argv);
    Test test;
    return QTest::qExec(&test, argc, argv);
}
