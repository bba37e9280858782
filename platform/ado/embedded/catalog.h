#pragma once
#include <platform/ado/embedded/connection.h>

namespace ado20::embedded {

class Catalog : public ado20::Catalog {
  public:
    _ConnectionPtr Create(std::string_view connectionString) override {
        const Pointer<Connection> connection(new Connection);
        connection->openFile(connectionString, true);
        return _ConnectionPtr(connection.get());
    }
};

}  // namespace ado20::embedded
