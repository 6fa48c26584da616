// Runs steps of which each is to be done whatever becomes of the others; the first error of all is
// raised at the end.
//
//   FirstError errors;
//   errors.Run([&] { editor.CloseEditor(); });
//   errors.Run([&] { table.Recalculate(row); });
//   errors.Raise();
#pragma once

#include <exception>

#include "base/error.h"

namespace demovex {

class FirstError {
  public:
    template <typename Step>
    void Run(Step&& step) {
        try {
            step();
        } catch (const Error&) {
            if (!first_) first_ = std::current_exception();
        }
    }
    void Raise() const {
        if (first_) std::rethrow_exception(first_);
    }

  private:
    std::exception_ptr first_;
};

}  // namespace demovex
