#include "tests/tools/differences/EditedNetworks.h"
#include "tools/differences/PatchApplication.h"
#include "tools/differences/PatchInversion.h"
#include "tools/reports/Failure.h"

#include <QBuffer>

namespace {

class PatchLaws : public EditedNetworks {
protected:
    void apply(QByteArray patch) {
        QBuffer buffer(&patch);
        buffer.open(QIODevice::ReadOnly);
        try {
            const StoreSession store(address(), Access::Write);
            PatchReader reader(buffer, QStringLiteral("patch"));
            const PatchedNetwork patched = applyPatch(store, kNet, reader, Fitting::Whole);
            EXPECT_EQ(patched.changes, patch.count('\n') - 1);
        } catch (const Failure &failure) {
            ADD_FAILURE() << failure.what() << '\n' << patch.constData();
        }
    }

    static QByteArray inverse(QByteArray patch) {
        QBuffer from(&patch);
        QBuffer to;
        from.open(QIODevice::ReadOnly);
        to.open(QIODevice::WriteOnly);
        invertPatch(from, QStringLiteral("patch"), to);
        return to.data();
    }
};

} // namespace

TEST_P(PatchLaws, APatchMakesTheOneOfTheOtherAndItsInverseTakesThatBack) {
    forEachNetwork(isPostgres() ? 1 : 3, [this](RandomNet &random) {
        const QString other = twin();
        edit(other, random);
        alter(other, random);
        if (HasFailure())
            return;

        EXPECT_EQ(diff(address(), address()).count('\n'), 1);
        const QStringList before = rowsHere();
        const QString digestBefore = digest(address());
        const QByteArray patch = diff(address(), other);
        apply(patch);
        EXPECT_EQ(diff(address(), other).count('\n'), 1);
        EXPECT_TRUE(isPostgres() || rowsHere() == rowsOf(other));
        const QByteArray back = inverse(patch);
        apply(back);
        EXPECT_EQ(rowsHere(), before);
        EXPECT_EQ(digest(address()), digestBefore);
        EXPECT_EQ(diff(other, address()), back);
    });
}

INSTANTIATE_TEST_SUITE_P(Stores, PatchLaws, testing::ValuesIn(kStoreKinds), storeKindName);
