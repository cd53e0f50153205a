// One table; a letter's two flags say where it is still due.
// SPDX-License-Identifier: MIT
#include "publish/outbox.h"

#include <utility>

namespace kestrel::publish {
namespace {

const char* ColumnOf(Receiver receiver) {
  return receiver == Receiver::Broker ? "broker" : "command";
}

}  // namespace

Outbox::Outbox(std::unique_ptr<database::Database> database, Receivers receivers)
    : database_(std::move(database)), receivers_(receivers) {
  database_->Run(std::string("create table if not exists letter(number ") + database_->KeyType() +
                 ", id text not null unique, topic text not null, payload text not null, "
                 "broker bigint not null, command bigint not null)");
  for (const char* column : {"broker", "command"}) {
    database_->Run(std::string("create index if not exists letter_") + column +
                   " on letter(number) where " + column + " = 1");
  }
}

void Outbox::Put(const Letter& letter, Receivers due) {
  database::Transaction transaction(*database_);
  database_->Run(
      "insert into letter(id, topic, payload, broker, command) values($1, $2, $3, $4, $5) "
      "on conflict(id) do nothing",
      {letter.id, letter.topic, letter.payload, std::int64_t{due.broker},
       std::int64_t{due.command}});
  database_->Run(
      "delete from letter where broker = 0 and command = 0 and "
      "number <= (select max(number) from letter) - $1",
      {kRememberedLetters});
  transaction.Commit();
  database_->ReleaseMemory();
}

std::optional<Letter> Outbox::Next(Receiver receiver, std::int64_t after) {
  std::optional<Letter> letter;
  database_->Run(std::string("select number, id, topic, payload from letter where ") +
                     ColumnOf(receiver) + " = 1 and number > $1 order by number limit 1",
                 {after}, [&](database::Row row) {
                   letter = Letter{database::Integer(row[0]), database::Text(row[1]),
                                   database::Text(row[2]), database::Text(row[3])};
                 });
  return letter;
}

void Outbox::Arrived(Receiver receiver, std::int64_t number) {
  database_->Run(std::string("update letter set ") + ColumnOf(receiver) + " = 0 where number = $1",
                 {number});
}

void Outbox::Arrived(Receiver receiver, const std::string& id) {
  database_->Run(std::string("update letter set ") + ColumnOf(receiver) + " = 0 where id = $1",
                 {id});
}

std::int64_t Outbox::Waiting() {
  return database::Number(*database_,
                          "select (select count(*) from letter where broker = 1 and $1 = 1) + "
                          "(select count(*) from letter where command = 1 and $2 = 1 and "
                          "(broker = 0 or $1 = 0))",
                          {std::int64_t{receivers_.broker}, std::int64_t{receivers_.command}});
}

}  // namespace kestrel::publish
