// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>
#include <utility>
#include <variant>

namespace halvane {

/// Why something did not work, as a text for the user.
struct Failure {
    QString text;
};

/// What a function gives that may fail: its value, or the failure.
///
///     Result<Sound> opened = open(path);
///     if (!opened)
///         return opened.failure();
///     play(*opened);
///
/// A plain value like any other: copied, moved, and safe wherever its parts are.
template<typename Value = void>
class [[nodiscard]] Result {
  public:
    Result(Value value)
        : m_content(std::move(value)) {}
    Result(Failure failure)
        : m_content(std::move(failure)) {}

    /// Whether there is a value.
    explicit operator bool() const { return m_content.index() == 0; }
    /// The value, which must be there.
    const Value& operator*() const& { return *std::get_if<0>(&m_content); }
    Value& operator*() & { return *std::get_if<0>(&m_content); }
    Value&& operator*() && { return std::move(*std::get_if<0>(&m_content)); }
    const Value* operator->() const { return std::get_if<0>(&m_content); }
    Value* operator->() { return std::get_if<0>(&m_content); }
    /// Why there is no value; asked for only then.
    [[nodiscard]] const Failure& failure() const { return *std::get_if<1>(&m_content); }

  private:
    std::variant<Value, Failure> m_content;
};

/// Of a function that gives nothing but may fail; `return {};` is success.
template<>
class [[nodiscard]] Result<void> {
  public:
    Result() = default;
    Result(Failure failure)
        : m_failure(std::move(failure)) {}

    /// Whether it worked.
    explicit operator bool() const { return !m_failure; }
    /// Why it did not work; asked for only then.
    [[nodiscard]] const Failure& failure() const { return *m_failure; }

  private:
    std::optional<Failure> m_failure;
};

} // namespace halvane
