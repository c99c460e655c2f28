// A database in a file of the test's folder.
#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "com/late_bound.h"
#include "common/run_time_error.h"
#include "tests/support/ado_server.h"
#include "tests/support/files.h"
#include "tests/support/narrow.h"

namespace qvx::test {

// Its tests are skipped where no driver for the database is installed.
class DatabaseTest : public TemporaryFolder {
  protected:
    void SetUp() override {
        TemporaryFolder::SetUp();
        server_ = std::make_unique<AdoServer>();
        try {
            Execute(u"create table t(i integer)");
        } catch (const RunTimeError& error) {
            if (!MeansNoDriver(error.Description())) throw;
            GTEST_SKIP() << "NO ODBC DRIVER FOR SQLITE IS INSTALLED: " << Narrow(error.Description());
        }
    }
    // The folder can only be removed once nobody has the database open.
    void TearDown() override {
        server_.reset();
        TemporaryFolder::TearDown();
    }

    ComPtr<IDispatch> Opened() const {
        auto connection = CreateNamedObject(L"ADODB.Connection");
        LateMember(connection.get(), L"Open").Get(connection.get(), {Variant(u"Driver=SQLite3;Database=" + file_)});
        return connection;
    }
    static void Execute(const ComPtr<IDispatch>& connection, const Text& sql) {
        LateMember(connection.get(), L"Execute").Get(connection.get(), {Variant(sql)});
    }
    void Execute(const Text& sql) const { Execute(Opened(), sql); }

    const Text file_ = In(u"Shop of \u0416anna.db");
    const Text connection_ = u"Driver={SQLite3 ODBC Driver};NoCreat=1;PWD=hush;Database=";

  private:
    std::unique_ptr<AdoServer> server_;
};

}  // namespace qvx::test
