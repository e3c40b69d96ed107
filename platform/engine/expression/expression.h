// The expression language: text to a compiled form bound to the fields of a view, evaluated record by record.
//
//     Fault fault;
//     auto compiled = Compiled::compile("sta =~ /AA.*/ && lat > 40", names, dbINTEGER, &fault);
//     if (compiled == nullptr) elog_complain(0, "%s", fault.text.c_str());   // with the expression and a caret
//     Scratch scratch;                                                       // one a thread
//     std::int64_t yes = 0;
//     if (compiled->integer(record, &scratch, &yes) && yes != 0) ...
//
// lex.cpp turns text into tokens, parse.cpp tokens into a tree, bind.cpp names into fields and kinds, emit.cpp the tree
// into a program, evaluate.cpp runs the program. Input from strangers runs on a budget: kMaxNesting levels, kMaxLength
// bytes, RE2's own memory limit. Here nulls are values; nullable_expression.h has the form in which they propagate.
//
// A compiled form does not change: threads may evaluate it at the same time, each with a scratch of its own.
#ifndef TRIGLUB_ENGINE_EXPRESSION_EXPRESSION_H
#define TRIGLUB_ENGINE_EXPRESSION_EXPRESSION_H

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace triglub::expression {

inline constexpr int kMaxNesting = 200;  // parentheses, call arguments, ?: and prefix operators
inline constexpr std::size_t kMaxLength = std::size_t{64} * 1024;  // bytes of one expression

enum class Kind : std::uint8_t { integer, real, text };

inline constexpr int kNoField = -1;

// A field as a view resolves it. `id` is the view's own number for it.
struct Field {
  int id = 0;
  Kind kind = Kind::text;
  bool has_doubt = false;  // a real that was measured and written with some digits
};

// What a null field is to an expression: the null value of its schema like any other value, or a null, which makes null
// what is computed of it.
enum class Nulls : std::uint8_t { as_values, propagate };

// The names that an expression may use.
class FieldNames {
 public:
  virtual ~FieldNames() = default;
  // The field of that name, bare or qualified; nothing when there is none.
  virtual std::optional<Field> find(std::string_view name) const = 0;
  // The name that one without a field was likely meant to be, for the message about it; nothing when none is near.
  virtual std::optional<std::string> nearest_to(std::string_view /*name*/) const { return std::nullopt; }
};

// The values of one record. Nulls come as the field's null value.
class Record {
 public:
  virtual ~Record() = default;
  virtual std::int64_t integer(int field) const = 0;  // fields of Kind::integer
  virtual double real(int field) const = 0;           // fields of Kind::real
  // Every field: its text as dbget gives it; valid as long as the record's table.
  virtual std::string_view text(int field) const = 0;
  virtual bool is_null(int field) const = 0;
  // Of a real that is not null: how far it may be from what was measured; 0 for one that is exact.
  virtual double doubt(int /*field*/) const { return 0; }
};

// Why an expression does not compile.
struct Fault {
  std::string text;      // what was expected; then, on lines of their own, the expression and a caret under the place
  std::size_t position;  // byte offset of the place
};

// The test of `=~`: does the whole text match. Holds a literal when the pattern is one, else RE2's compiled form.
class Matcher {
 public:
  virtual ~Matcher() = default;
  virtual bool matches(std::string_view text) const = 0;  // of the trimmed text
  virtual const std::string* literal() const = 0;         // the one text that matches, or null when it is no literal
};

// Memory for the texts that are made during an evaluation. It is reused by later evaluations, of any expressions, and
// never shrinks; one thread at a time.
class Scratch {
 public:
  // REQUIRES: no evaluation is under way.
  std::string* texts(std::size_t count) {
    if (texts_.size() < count) texts_.resize(count);
    return texts_.data();
  }

 private:
  std::vector<std::string> texts_;
};

class Compiled {
 public:
  // The compiled form, its result to be of `type` (dbINTEGER, dbREAL, dbTIME, dbYEARDAY or dbSTRING); null, and the
  // fault, when the text is no expression over these names.
  static std::unique_ptr<Compiled> compile(std::string_view text, const FieldNames& names, int type, Fault* fault);
  virtual ~Compiled() = default;

  // The value at a record, converted as needed to what is asked for here. False when the evaluation fails (division by
  // zero, domain error, integer overflow, a text that is no number, a result that is no finite number where it has to
  // be); the result is then untouched.
  virtual bool integer(const Record& record, Scratch* scratch, std::int64_t* result) const = 0;
  virtual bool real(const Record& record, Scratch* scratch, double* result) const = 0;
  virtual bool text(const Record& record, Scratch* scratch, std::string* result) const = 0;
  // True when the expression evaluates to a number other than 0 (a text counts as the number it holds).
  virtual bool is_true(const Record& record, Scratch* scratch) const = 0;

  // When the whole expression is FIELD =~ /pattern/ or FIELD !~ /pattern/: its parts, for an engine that knows the
  // field's distinct values and need not ask record by record. The matcher belongs to the compiled form.
  struct FieldMatch {
    int field;
    const Matcher* matcher;
    bool negated;
  };
  virtual std::optional<FieldMatch> field_match() const = 0;
};

}  // namespace triglub::expression

#endif
