// Kinds go from the leaves to the root: a node is bound when its operands are.
#include "engine/expression/bind.h"

#include <algorithm>
#include <string>
#include <utility>

#include "engine/expression/fault.h"
#include "engine/expression/format.h"
#include "engine/expression/functions.h"
#include "engine/expression/matcher.h"
#include "platform/text.h"

namespace triglub::expression {

namespace {

bool is_number(const Node& node) { return node.kind != Kind::text; }
bool is_integer(const Node& node) { return node.kind == Kind::integer; }

class Binder {
 public:
  Binder(Tree* tree, const FieldNames& names, Nulls nulls) : tree_(tree), names_(names), nulls_(nulls) {}

  void bind(Node* node) const {
    switch (node->type) {
      case NodeType::field:
        return bind_field(node);
      case NodeType::prefix:
        return bind_prefix(node);
      case NodeType::binary:
        return bind_binary(node);
      case NodeType::match:
        return bind_match(node);
      case NodeType::conditional:
        return bind_conditional(node);
      case NodeType::call:
        return bind_call(node);
      default:
        return;  // literals know what they are
    }
  }

 private:
  const Node& at(NodeIndex index) const { return tree_->nodes[index]; }

  void expect_number(NodeIndex index, std::string_view where, Operator oper) const {
    if (is_number(at(index))) return;
    throw CompileError{at(index).begin,
                       "expected a number " + std::string(where) + " " + std::string(entry_of(oper).symbol)};
  }

  void bind_field(Node* node) const {
    const std::optional<Field> field = names_.find(node->text);
    if (!field) {
      throw CompileError{node->begin, "expected a field, found no \"" + std::string(node->text) + "\"" +
                                          question(names_.nearest_to(node->text))};
    }
    node->field = field->id;
    node->kind = field->kind;
    node->has_doubt = field->has_doubt;
  }

  void bind_prefix(Node* node) const {
    expect_number(node->a, "behind", node->oper);
    node->kind = node->oper == Operator::negate ? at(node->a).kind : Kind::integer;
  }

  void bind_binary(Node* node) const {
    node->kind = Kind::integer;
    if (is_comparison(node->oper)) return;
    expect_number(node->a, "before", node->oper);
    expect_number(node->b, "behind", node->oper);
    if (is_logical(node->oper)) return;
    const bool stays_integer = is_integer(at(node->a)) && is_integer(at(node->b)) && node->oper != Operator::divide;
    node->kind = stays_integer ? Kind::integer : Kind::real;
  }

  void bind_match(Node* node) const {
    node->kind = Kind::integer;
    PatternFault fault;
    std::unique_ptr<Matcher> matcher = make_matcher(node->text, &fault);
    if (matcher == nullptr) {
      throw CompileError{node->pattern_begin + 1 + fault.offset, "expected a regular expression: " + fault.reason};
    }
    node->matcher = matcher.get();
    tree_->matchers.push_back(std::move(matcher));
  }

  void bind_conditional(Node* node) const {
    if (!is_number(at(node->a))) throw CompileError{at(node->a).begin, "expected a number before ?"};
    node->kind = common_kind(at(node->b), at(node->c), "behind : as before it");
  }

  // The kind of a value that is one or the other.
  static Kind common_kind(const Node& a, const Node& b, const std::string& where) {
    if (is_number(a) != is_number(b)) {
      throw CompileError{b.begin, std::string("expected a ") + (is_number(a) ? "number " : "text ") + where};
    }
    return is_integer(a) ? b.kind : a.kind;
  }

  void bind_call(Node* node) const {
    const Function* function = find_function(node->text, nulls_);
    if (function == nullptr) {
      throw CompileError{node->begin, "expected a function, found no \"" + std::string(node->text) + "\"" +
                                          question(nearest_function(node->text))};
    }
    expect_count(*node, *function);
    const std::span<const NodeIndex> arguments = tree_->arguments_of(*node);
    for (std::size_t i = 0; i < arguments.size(); ++i) expect_argument(*function, i, at(arguments[i]));
    if (function->form == Form::format) expect_format(at(arguments[0]), at(arguments[1]));
    if (is_over_records(function->form)) expect_no_function_over_records(*node);
    node->function = function;
    node->kind = kind_of_call(*function, arguments);
  }

  Kind kind_of_call(const Function& function, std::span<const NodeIndex> arguments) const {
    if (function.form == Form::assumption) {
      return common_kind(at(arguments[0]), at(arguments[1]), "as argument 2 of assume as argument 1 is");
    }
    if (function.form == Form::agreement) {
      return common_kind(at(arguments[0]), at(arguments[1]), "as argument 2 of agreed");
    }
    if (is_over_records(function.form) && function.form != Form::count) {
      return at(arguments[0]).kind;
    }
    const bool all_integers =
        std::all_of(arguments.begin(), arguments.end(), [&](NodeIndex argument) { return is_integer(at(argument)); });
    return all_integers && function.run_integers != nullptr ? Kind::integer : function.result;
  }

  // The nodes of the arguments stand right before the call, and are those that begin behind it.
  void expect_no_function_over_records(const Node& call) const {
    const auto index = static_cast<std::size_t>(&call - tree_->nodes.data());
    for (std::size_t inside = index; inside > 0 && tree_->nodes[inside - 1].begin > call.begin; --inside) {
      const Node& node = tree_->nodes[inside - 1];
      if (node.function == nullptr || !is_over_records(node.function->form)) continue;
      throw CompileError{node.begin, "expected no function over records within " + std::string(call.text)};
    }
  }

  std::optional<std::string> nearest_function(std::string_view name) const {
    return nulls_ == Nulls::propagate ? nearest(name, function_names(nulls_)) : std::nullopt;
  }

  static std::string question(const std::optional<std::string>& name) {
    return name ? ", did you mean '" + *name + "'?" : "";
  }

  static void expect_count(const Node& call, const Function& function) {
    const std::size_t least = function.least_arguments();
    const bool fits = function.is_open_ended() ? call.argument_count >= least : call.argument_count == least;
    if (fits) return;
    throw CompileError{call.begin, "expected " + std::to_string(least) + (function.is_open_ended() ? " or more" : "") +
                                       (least == 1 ? " argument" : " arguments") + " for " +
                                       std::string(function.name)};
  }

  static void expect_argument(const Function& function, std::size_t index, const Node& argument) {
    const char* expected = missing(function.parameter(index), argument);
    if (expected == nullptr) return;
    throw CompileError{argument.begin, "expected " + std::string(expected) + " as argument " +
                                           std::to_string(index + 1) + " of " + std::string(function.name)};
  }

  // What the parameter expects; null when the argument is that.
  static const char* missing(char parameter, const Node& argument) {
    switch (parameter) {
      case 'n':
      case 'r':
        return is_number(argument) ? nullptr : "a number";
      case 'i':
        return is_integer(argument) ? nullptr : "an integer";
      case 't':
        return is_number(argument) ? "a text" : nullptr;
      case 'f':
        return argument.type == NodeType::field ? nullptr : "a field and nothing else";
      default:
        return nullptr;
    }
  }

  // A format that stands in the expression is checked here, any other when there is a record.
  static void expect_format(const Node& format, const Node& argument) {
    if (format.type != NodeType::text) return;
    FormatFault fault;
    const std::optional<Format> read = Format::read(format.text, &fault);
    const std::size_t begin = format.begin + 1;  // behind the quote
    if (!read) throw CompileError{begin + fault.offset, fault.expected};
    if (read->kind() != Kind::text && !is_number(argument)) {
      throw CompileError{argument.begin, "expected a number as the format wants"};
    }
  }

  Tree* tree_;
  const FieldNames& names_;
  Nulls nulls_;
};

}  // namespace

void bind(Tree* tree, const FieldNames& names, Nulls nulls) {
  const Binder binder(tree, names, nulls);
  for (Node& node : tree->nodes) binder.bind(&node);
}

}  // namespace triglub::expression
