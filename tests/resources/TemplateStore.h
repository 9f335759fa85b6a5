#pragma once

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// A template store as the library carries it, copied to a file of its own and read apart from the library.
class TemplateStore {
public:
    explicit TemplateStore(const QString &templateName);
    ~TemplateStore();
    TemplateStore(const TemplateStore &) = delete;
    TemplateStore &operator=(const TemplateStore &) = delete;

    /// The rows of a statement, each with its values joined by "|"; a refused statement fails the test.
    QStringList rows(const QString &sql) const;
    QStringList tables() const;
    /// The columns of a table, each as name, type, not null, default and place in the key.
    QStringList columns(const QString &table) const;
    QString path() const { return mFolder.filePath(QStringLiteral("template")); }

private:
    QTemporaryDir mFolder;
    QString mConnection;
};
