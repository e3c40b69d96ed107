// Tree to instructions, operands first. Every operand is asked for in the form that its user needs, so that a field can
// be read as its own text and a literal be converted here; what is left becomes a conversion instruction.
#include "engine/expression/emit.h"

#include <algorithm>
#include <utility>

namespace triglub::expression {

namespace {

// The form in which a value is wanted.
enum class Want : std::uint8_t { own, integer, real, text, truth };

Want want_of(Kind kind) {
  switch (kind) {
    case Kind::integer:
      return Want::integer;
    case Kind::real:
      return Want::real;
    case Kind::text:
      return Want::text;
  }
  return Want::own;
}

Op arithmetic(Operator oper, Kind kind) {
  const bool is_real = kind == Kind::real;
  switch (oper) {
    case Operator::add:
      return is_real ? Op::add_reals : Op::add_integers;
    case Operator::subtract:
      return is_real ? Op::subtract_reals : Op::subtract_integers;
    case Operator::multiply:
      return is_real ? Op::multiply_reals : Op::multiply_integers;
    case Operator::remainder:
      return is_real ? Op::remainder_reals : Op::remainder_integers;
    default:
      return Op::divide_reals;
  }
}

std::uint8_t outcomes_of(Operator oper) {
  switch (oper) {
    case Operator::less:
      return kLess;
    case Operator::less_equal:
      return kLess | kEqual;
    case Operator::greater:
      return kGreater;
    case Operator::greater_equal:
      return kGreater | kEqual;
    case Operator::equal:
      return kEqual;
    default:
      return kLess | kGreater | kUnordered;  // NaN differs from every number
  }
}

class Emitter {
 public:
  Emitter(const Tree& tree, Nulls nulls) : tree_(tree), nulls_(nulls) {}

  // The program that computes a node and what it stands on.
  Program whole(NodeIndex root) {
    emit(root, Want::own);
    program_.result = at(root).kind;
    return std::move(program_);
  }

 private:
  const Node& at(NodeIndex index) const { return tree_.nodes[index]; }

  void emit(NodeIndex index, Want want);
  void emit_operand(const Node& node, Want want);
  void emit_literal(const Node& node, Want want);
  void emit_field(const Node& node, Want want);
  void emit_prefix(const Node& node);
  void emit_conditional(const Node& node);
  void emit_call(const Node& node);
  void emit_format(const Node& node);
  void emit_null_test(NodeIndex argument);
  void emit_assumption(const Node& node);
  void emit_agreement(const Node& node);
  void emit_over_records(const Node& node);
  void finish_chain_link(const Node& node, Want want);
  void finish_logical(const Node& node);

  Op comparison(const Node& node) const;
  Want operands_wanted(const Node& node) const;
  static Want argument_wanted(const Node& call, std::size_t argument);
  void convert(const Node& node, Want want);

  // Adds an instruction that takes `taken` values from the stack and puts `put` there.
  std::size_t add(const Instruction& instruction, std::size_t taken, std::size_t put) {
    depth_ = depth_ - taken + put;
    program_.stack_size = std::max(program_.stack_size, depth_);
    program_.code.push_back(instruction);
    return program_.code.size() - 1;
  }
  std::uint32_t new_scratch() { return static_cast<std::uint32_t>(program_.scratch_size++); }
  void land(std::size_t jump) { program_.code[jump].target = static_cast<std::uint32_t>(program_.code.size()); }

  // The field that the node is by itself.
  static int bare_field(const Node& node) { return node.type == NodeType::field ? node.field : kNoField; }
  static bool is_chain(const Node& node) { return node.type == NodeType::binary || node.type == NodeType::match; }
  // 1 or 0 already. A comparison and a match are that unless they can be null.
  bool is_truth(const Node& node) const {
    const bool is_not = node.type == NodeType::prefix && node.oper == Operator::logical_not;
    if (is_not || (node.type == NodeType::binary && is_logical(node.oper))) return true;
    if (nulls_ == Nulls::propagate) return false;
    return node.type == NodeType::match || (node.type == NodeType::binary && is_comparison(node.oper));
  }

  const Tree& tree_;
  Nulls nulls_;
  Program program_;
  std::size_t depth_ = 0;
};

// Chains of operators lean to the left and may be as long as the text: a loop walks down them and up again, and only
// right sides, arguments and the like recurse, which the limit of nesting bounds.
void Emitter::emit(NodeIndex index, Want want) {
  std::vector<std::pair<NodeIndex, Want>> chain;
  while (is_chain(at(index))) {
    chain.emplace_back(index, want);
    want = operands_wanted(at(index));
    index = at(index).a;
  }
  emit_operand(at(index), want);
  for (auto link = chain.rbegin(); link != chain.rend(); ++link) finish_chain_link(at(link->first), link->second);
}

void Emitter::emit_operand(const Node& node, Want want) {
  switch (node.type) {
    case NodeType::field:
      return emit_field(node, want);
    case NodeType::prefix:
      emit_prefix(node);
      break;
    case NodeType::conditional:
      emit_conditional(node);
      break;
    case NodeType::call:
      emit_call(node);
      break;
    default:
      return emit_literal(node, want);
  }
  convert(node, want);
}

void Emitter::emit_literal(const Node& node, Want want) {
  const bool converts = node.type == NodeType::integer && want == Want::real;
  Instruction push{.op = Op::constant};
  if (converts) {
    push.value = Value::of(static_cast<double>(node.integer));
  } else if (node.type == NodeType::integer) {
    push.value = Value::of(node.integer);
  } else if (node.type == NodeType::real) {
    push.value = Value::of(node.real);
  } else {
    push.value = Value::of(node.text);
  }
  add(push, 0, 1);
  if (!converts) convert(node, want);
}

void Emitter::emit_field(const Node& node, Want want) {
  if (want == Want::text || node.kind == Kind::text) {
    add({.op = Op::field_text, .field = node.field}, 0, 1);
    if (node.kind == Kind::text) convert(node, want);
    return;
  }
  add({.op = node.kind == Kind::integer ? Op::field_integer : Op::field_real, .field = node.field}, 0, 1);
  program_.has_doubt |= node.has_doubt;
  convert(node, want);
}

void Emitter::emit_prefix(const Node& node) {
  if (node.oper == Operator::logical_not) {
    emit(node.a, Want::truth);
    add({.op = Op::logical_not}, 1, 1);
    return;
  }
  emit(node.a, Want::own);
  add({.op = node.kind == Kind::integer ? Op::negate_integer : Op::negate_real}, 1, 1);
}

void Emitter::emit_conditional(const Node& node) {
  const Want side = want_of(node.kind);
  emit(node.a, Want::truth);
  const std::size_t when_false = add({.op = Op::jump_if_false}, 1, 0);
  emit(node.b, side);
  const std::size_t done = add({.op = Op::jump}, 1, 0);  // the value stays, in the place of the other branch's
  land(when_false);
  emit(node.c, side);
  land(done);
}

void Emitter::emit_call(const Node& node) {
  const Function& function = *node.function;
  const std::span<const NodeIndex> arguments = tree_.arguments_of(node);
  switch (function.form) {
    case Form::conversion:
      return emit(arguments[0], want_of(function.result));
    case Form::null_test:
      return emit_null_test(arguments[0]);
    case Form::format:
      return emit_format(node);
    case Form::identity:
      return emit(arguments[0], Want::own);
    case Form::assumption:
      return emit_assumption(node);
    case Form::agreement:
      return emit_agreement(node);
    case Form::first:
    case Form::last:
    case Form::earliest:
    case Form::latest:
    case Form::count:
      return emit_over_records(node);
    case Form::call:
    case Form::call_on_nulls:
      break;
  }
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    emit(arguments[i], argument_wanted(node, i));
    if (function.form == Form::call_on_nulls) add({.op = Op::null_to_empty}, 1, 1);
  }
  const bool on_integers = function.run_integers != nullptr && node.kind == Kind::integer;
  add({.op = Op::call,
       .keeps_doubt = function.keeps_doubt,
       .count = node.argument_count,
       .scratch = new_scratch(),
       .run = on_integers ? function.run_integers : function.run},
      arguments.size(), 1);
}

// A field is asked itself: its value need not be read.
void Emitter::emit_null_test(NodeIndex argument) {
  if (at(argument).type == NodeType::field) {
    add({.op = Op::field_is_null, .field = at(argument).field}, 0, 1);
    return;
  }
  emit(argument, Want::own);
  add({.op = Op::is_null}, 1, 1);
}

void Emitter::emit_assumption(const Node& node) {
  const std::span<const NodeIndex> arguments = tree_.arguments_of(node);
  const Want side = want_of(node.kind);
  emit(arguments[0], side);
  add({.op = Op::push_is_null}, 0, 1);
  const std::size_t when_known = add({.op = Op::jump_if_false}, 1, 0);
  add({.op = Op::drop_assumed}, 1, 0);
  emit(arguments[1], side);
  land(when_known);
}

// The second argument is not asked for where the first is null.
void Emitter::emit_agreement(const Node& node) {
  const std::span<const NodeIndex> arguments = tree_.arguments_of(node);
  const Want side = want_of(node.kind);
  emit(arguments[0], side);
  add({.op = Op::push_is_null}, 0, 1);
  add({.op = Op::logical_not}, 1, 1);
  const std::size_t when_null = add({.op = Op::jump_if_false}, 1, 0);
  emit(arguments[1], side);
  add({.op = Op::agreed, .kind = node.kind}, 2, 1);
  land(when_null);
  program_.asks_doubt = true;
}

// The argument is computed at other records than the rest, so it is a program of its own.
void Emitter::emit_over_records(const Node& node) {
  const NodeIndex argument = tree_.arguments_of(node)[0];
  add({.op = Op::over_records, .part = static_cast<std::uint32_t>(program_.parts.size())}, 0, 1);
  program_.parts.push_back({node.function->form, Emitter(tree_, nulls_).whole(argument)});
  program_.has_doubt |= program_.parts.back().argument.has_doubt;
}

void Emitter::emit_format(const Node& node) {
  const std::span<const NodeIndex> arguments = tree_.arguments_of(node);
  const Node& format = at(arguments[0]);
  const Node& argument = at(arguments[1]);
  if (format.type != NodeType::text) {
    emit(arguments[0], Want::text);
    emit(arguments[1], Want::own);
    add({.op = Op::format_any, .kind = argument.kind, .field = bare_field(argument), .scratch = new_scratch()}, 2, 1);
    return;
  }
  FormatFault none;
  program_.formats.push_back(std::make_unique<Format>(*Format::read(format.text, &none)));
  const Format* read = program_.formats.back().get();
  emit(arguments[1], want_of(read->kind()));
  add({.op = Op::format, .scratch = new_scratch(), .formatting = read}, 1, 1);
}

// The left side's value is on the stack.
void Emitter::finish_chain_link(const Node& node, Want want) {
  if (node.type == NodeType::match) {
    add({.op = Op::match, .is_negated = node.oper == Operator::no_match, .matcher = node.matcher}, 1, 1);
  } else if (is_logical(node.oper)) {
    finish_logical(node);
  } else {
    emit(node.b, operands_wanted(node));
    Instruction instruction{.op = arithmetic(node.oper, node.kind)};
    if (is_comparison(node.oper)) {
      const Node& number = at(node.a).kind == Kind::text ? at(node.b) : at(node.a);
      instruction = {.op = comparison(node),
                     .outcomes = outcomes_of(node.oper),
                     .kind = number.kind,
                     .field = bare_field(number),
                     .scratch = 0};
    }
    add(instruction, 2, 1);
  }
  convert(node, want);
}

void Emitter::finish_logical(const Node& node) {
  const std::size_t decided = add({.op = node.oper == Operator::logical_and ? Op::jump_and : Op::jump_or}, 1, 0);
  emit(node.b, Want::truth);
  land(decided);
}

Op Emitter::comparison(const Node& node) const {
  const Kind a = at(node.a).kind;
  const Kind b = at(node.b).kind;
  if (a == Kind::text && b == Kind::text) return Op::compare_texts;
  if (a == Kind::text) return Op::compare_text_to_number;
  if (b == Kind::text) return Op::compare_number_to_text;
  return a == Kind::integer && b == Kind::integer ? Op::compare_integers : Op::compare_reals;
}

Want Emitter::operands_wanted(const Node& node) const {
  if (node.type == NodeType::match) return Want::text;
  if (is_logical(node.oper)) return Want::truth;
  if (!is_comparison(node.oper)) return want_of(node.kind);
  return comparison(node) == Op::compare_reals ? Want::real : Want::own;
}

Want Emitter::argument_wanted(const Node& call, std::size_t argument) {
  switch (call.function->parameter(argument)) {
    case 'n':
      return want_of(call.kind);
    case 'r':
      return Want::real;
    case 's':
      return Want::text;
    default:
      return Want::own;
  }
}

// Turns the value of the node, on top of the stack and of the node's own kind, into what is wanted.
void Emitter::convert(const Node& node, Want want) {
  const Kind kind = node.kind;
  const auto change = [&](Op op) { add({.op = op}, 1, 1); };
  switch (want) {
    case Want::own:
      return;
    case Want::integer:
      if (kind == Kind::real) change(Op::real_to_integer);
      if (kind == Kind::text) change(Op::text_to_integer);
      return;
    case Want::real:
      if (kind == Kind::integer) change(Op::integer_to_real);
      if (kind == Kind::text) change(Op::text_to_real);
      return;
    case Want::text:
      if (kind == Kind::text) return;
      add({.op = kind == Kind::integer ? Op::integer_to_text : Op::real_to_text, .scratch = new_scratch()}, 1, 1);
      program_.asks_doubt |= kind == Kind::real;
      return;
    case Want::truth:
      if (!is_truth(node)) change(kind == Kind::integer ? Op::integer_to_truth : Op::real_to_truth);
      return;
  }
}

}  // namespace

Program emit(const Tree& tree, Nulls nulls) {
  return Emitter(tree, nulls).whole(static_cast<NodeIndex>(tree.nodes.size() - 1));
}

}  // namespace triglub::expression
