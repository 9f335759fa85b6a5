#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

// What somebody who means harm does to a store before sending it.

/// Executes statements on a store by a connection of the test's own, however odd they are: the engine's own
/// protection of the catalogue is off.
void alter(const QString &path, const QStringList &statements);

/// All commands that open the store @p store, each as the arguments behind the program's name. Some need
/// another one that is sound, or a place for a picture.
QList<QStringList> commandsThatOpen(const QString &store, const QString &sound, const QString &picture);

/// A rollback journal that goes with the bytes of a store and changes nothing of it. At the end it names the
/// file @p superJournal as that of a transaction on several files; it names none when the text is empty.
QByteArray hotJournal(const QByteArray &store, const QString &superJournal);
