// A database with somebody who is told of every statement before it is run.
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "database/database.h"

namespace kestrel::archive {

class WrappedDatabase : public database::Database {
 public:
  // Of transactions the word alone: "begin", "commit". Throws where the statement is to fail.
  using Before = std::function<void(const std::string& sql)>;
  WrappedDatabase(std::unique_ptr<Database> real, Before before)
      : real_(std::move(real)), before_(std::move(before)) {}

  using Database::Run;
  void Run(const std::string& sql, const database::Values& values,
           const database::OnRow& row) override {
    before_(sql);
    real_->Run(sql, values, row);
  }
  void Begin() override {
    before_("begin");
    real_->Begin();
  }
  void Commit() override {
    before_("commit");
    real_->Commit();
  }
  void Rollback() override { real_->Rollback(); }
  void Cancel() override { real_->Cancel(); }
  [[nodiscard]] const char* KeyType() const override { return real_->KeyType(); }
  [[nodiscard]] bool NumbersRows() const override { return real_->NumbersRows(); }
  [[nodiscard]] bool HasTable(const std::string& name) override { return real_->HasTable(name); }
  [[nodiscard]] bool IsBlank() override { return real_->IsBlank(); }
  void LockSchema() override { real_->LockSchema(); }
  void ReleaseMemory() override { real_->ReleaseMemory(); }
  [[nodiscard]] std::int64_t Size() override { return real_->Size(); }
  [[nodiscard]] std::vector<std::string> Damage() override { return real_->Damage(); }

 private:
  std::unique_ptr<Database> real_;
  Before before_;
};

}  // namespace kestrel::archive
