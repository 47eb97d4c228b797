#include "doubles/disturbance.h"

#include "contracts/component_front.h"

namespace zenqay {
namespace {

class DisturbedConnection : public Connection {
 private:
  template <typename Work>
  auto Pass(const Text& text, Work work) {
    try {
      return disturbance_.Pass(Step::Kind::Statement, text, work);
    } catch (const RuntimeError& error) {
      inner_->ErrorCollection()->Replace(error.items());
      throw;
    }
  }

 public:
  DisturbedConnection(std::shared_ptr<Connection> inner, Disturbance& disturbance)
      : inner_(std::move(inner)), disturbance_(disturbance) {}

  void PutConnectionTimeout(std::int16_t seconds) override { inner_->PutConnectionTimeout(seconds); }
  void PutCommandTimeout(std::int16_t seconds) override { inner_->PutCommandTimeout(seconds); }
  void PutConnectionString(const Text& connectionString) override { inner_->PutConnectionString(connectionString); }
  std::shared_ptr<Errors> ErrorCollection() override { return inner_->ErrorCollection(); }

  void Open() override {
    Pass("open", [&] {
      inner_->Open();
      return true;
    });
  }
  void Close() override {
    Pass("close", [&] {
      inner_->Close();
      return true;
    });
  }
  void PutDefaultDatabase(const Text& name) override {
    Pass("database", [&] {
      inner_->PutDefaultDatabase(name);
      return true;
    });
  }
  Text DefaultDatabase() override {
    return Pass("database", [&] { return inner_->DefaultDatabase(); });
  }
  bool TakeLock(const Text& name) override { return inner_->TakeLock(name); }
  void GiveLockBack(const Text& name) override { inner_->GiveLockBack(name); }
  std::int64_t Run(const Text& statement, Count count) override {
    return Pass(statement, [&] { return inner_->Run(statement, count); });
  }
  std::unique_ptr<QueryRows> RowsOf(const Text& query, CursorType cursor, LockType lock, CommandType options) override {
    return Pass(query, [&] { return inner_->RowsOf(query, cursor, lock, options); });
  }

 private:
  std::shared_ptr<Connection> inner_;
  Disturbance& disturbance_;
};

class DisturbedComponent : public ComponentFront {
 public:
  DisturbedComponent(Object inner, Text name, Disturbance& disturbance)
      : ComponentFront(std::move(inner)), name_(std::move(name)), disturbance_(disturbance) {}

  Value Call(std::string_view operation, Arguments arguments) override {
    return Pass(operation,
                [&] { return CallBehindFront(behind(), operation, arguments, [](Value value) { return value; }); });
  }

  Value Get(std::string_view property) override {
    return Pass(property, [&] { return behind().Get(property); });
  }

  void Put(std::string_view property, const Value& value) override {
    Pass(property, [&] {
      behind().Put(property, BehindFront(value));
      return Value();
    });
  }

 private:
  template <typename Work>
  Value Pass(std::string_view operation, Work work) {
    Value result = disturbance_.Pass(Step::Kind::Call, name_ + "." + Text(operation), work);
    return WithFront<DisturbedComponent>(std::move(result), name_ + "." + Text(operation) + ">", disturbance_);
  }

  Text name_;
  Disturbance& disturbance_;
};

}  // namespace

std::shared_ptr<Connection> DisturbedDatabase::CreateConnection() {
  return std::make_shared<DisturbedConnection>(inner_.CreateConnection(), disturbance_);
}

Object DisturbedComponents::Create(const Text& classId) {
  const Object created =
      disturbance_.Pass(Step::Kind::Call, "create " + classId, [&] { return inner_.Create(classId); });
  return WithFront<DisturbedComponent>(created, classId, disturbance_).AsObject();
}

void DisturbedLogFile::Open(const Text& path) {
  disturbance_.Pass(Step::Kind::Log, "open " + path, [&] {
    inner_.Open(path);
    return true;
  });
}

void DisturbedLogFile::WriteLine(const Text& line) {
  disturbance_.Pass(Step::Kind::Log, "line " + line, [&] {
    inner_.WriteLine(line);
    return true;
  });
}

void DisturbedLogFile::Close() {
  inner_.Close();
  disturbance_.Pass(Step::Kind::Log, "close", [] { return true; });
}

}  // namespace zenqay
