#pragma once

#include <QByteArray>
#include <QString>

#include <memory>
#include <variant>
#include <vector>

struct sqlite3;

/// What the SQLite engine itself takes for the work of whole networks: its C interface and nothing around it.
class BareEngine {
public:
    using Value = std::variant<std::monostate, long long, double, std::pair<bool, QByteArray>>;
    /// The rows of a table, in the order of the file.
    struct Table {
        QByteArray name;
        int columns = 0;
        std::vector<Value> values; ///< row after row
    };

    explicit BareEngine(const QString &path);
    ~BareEngine();
    BareEngine(const BareEngine &) = delete;
    BareEngine &operator=(const BareEngine &) = delete;

    /// The tables that hold rows.
    std::vector<QByteArray> tables();
    /// Reads every column of every row of the tables. @return the number of rows.
    long long scan(const std::vector<QByteArray> &tables);
    std::vector<Table> read(const std::vector<QByteArray> &tables);
    /// Writes the rows with one prepared insert a table, in one transaction.
    void insert(const std::vector<Table> &tables);
    /// Runs a statement with a number and an id for its placeholders, once for each, prepared once, in one
    /// transaction.
    void update(const QByteArray &sql, const std::vector<std::pair<double, long long>> &values);

private:
    void execute(const QByteArray &sql);

    sqlite3 *mEngine = nullptr;
    double mSum = 0; ///< of what was read, so that no read can be left out
};
