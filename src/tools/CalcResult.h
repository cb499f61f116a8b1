// What an expression comes to: a number, or why there is none.
#pragma once

namespace tw {

struct CalcResult {
    enum class Status {
        ok,
        // Nothing typed yet.
        empty,
        // Ends where more must follow ("2 +"): not wrong, only unfinished.
        incomplete,
        invalid,
        divisionByZero,
        // Beyond what a double holds.
        overflow,
        // No real answer (an even root of a negative number).
        undefined,
    };

    Status status = Status::empty;
    double value = 0;

    bool ok() const { return status == Status::ok; }
    bool operator==(const CalcResult&) const = default;
};

} // namespace tw
