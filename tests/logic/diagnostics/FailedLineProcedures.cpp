#include "FailedLineProcedures.h"

#include <algorithm>
#include <array>
#include <exception>
#include <filesystem>
#include <functional>
#include <new>
#include <thread>

#include "base/Collection.h"
#include "base/Event.h"
#include "base/Numbers.h"
#include "base/RuntimeError.h"
#include "base/ThrowRecord.h"
#include "diagnostics/Trailer.h"

namespace kestrel::procedures {

std::int32_t expectedLine = 0;

namespace {

volatile int gZero = 0;

// Sets the expected line without a statement on another line.
#define FAILS_HERE(statement) \
  do {                        \
    expectedLine = __LINE__;  \
    statement;                \
  } while (false)

inline int InlinedHelper(int value) {
  if (value == 0) throw RuntimeError(err::kInvalidCall, "The value is 0.");
  return 100 / value;
}

[[gnu::noinline]] int DistantHelper(int value) {
  const int half = InlinedHelper(value);
  return half + value;
}

int RaisedDirectly() {
  int Result = 0;
  try {
    Result = 1;
    if (gZero == 0) {
      FAILS_HERE(throw RuntimeError(err::kInvalidCall, "Raised by the procedure itself."));
    }
    Result = 2;
  } catch (...) {
    QDK_TRAILER(RaisedDirectly, QDK_PARAMETERS(), QDK_LOCALS(Result));
  }
  return Result;
}

int RaisedByInlinedCall() {
  int Result = 0;
  try {
    Result = InlinedHelper(gZero + 5);
    FAILS_HERE(Result += InlinedHelper(gZero));
    Result += InlinedHelper(gZero + 2);
  } catch (...) {
    QDK_TRAILER(RaisedByInlinedCall, QDK_PARAMETERS(), QDK_LOCALS(Result));
  }
  return Result;
}

int RaisedFarBelow() {
  int Result = 0;
  try {
    Result = DistantHelper(gZero + 3);
    FAILS_HERE(Result += DistantHelper(gZero));
    Result += DistantHelper(gZero + 4);
  } catch (...) {
    QDK_TRAILER(RaisedFarBelow, QDK_PARAMETERS(), QDK_LOCALS(Result));
  }
  return Result;
}

void FirstStatement() {
  std::int32_t Count = 0;
  std::string Name;
  try {
    FAILS_HERE(ParseNumber("no number"));
    Count = 1;
    Name = "one";
  } catch (...) {
    QDK_TRAILER(FirstStatement, QDK_PARAMETERS(), QDK_LOCALS(Count, Name));
  }
}

std::string InALoop(std::int32_t Steps) {
  std::string Result;
  std::int32_t i = 0;
  Collection<std::string> Items;
  try {
    Items.Add("first");
    for (i = 1; i <= Steps; ++i) {
      FAILS_HERE(Result += Items.Item(i));
      Result += ";";
    }
  } catch (...) {
    QDK_TRAILER(InALoop, QDK_PARAMETERS(Steps), QDK_LOCALS(i, Items, Result));
  }
  return Result;
}

void InALambda() {
  std::vector<int> Values;
  int Sum = 0;
  try {
    Values = {5, 2, 0, 1};
    std::sort(Values.begin(), Values.end());
    FAILS_HERE(std::for_each(Values.begin(), Values.end(), [&](int value) { Sum += InlinedHelper(value); }));
  } catch (...) {
    QDK_TRAILER(InALambda, QDK_PARAMETERS(), QDK_LOCALS(Values, Sum));
  }
}

void InAnEventsHandler() {
  Event<int> Raised;
  Connection Connected;
  try {
    Connected = Raised.Connect([](int value) { InlinedHelper(value); });
    Raised(gZero + 1);
    FAILS_HERE(Raised(gZero));
    Raised(gZero + 2);
  } catch (...) {
    QDK_TRAILER(InAnEventsHandler, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

// Two identical statements: the compiler must not merge them.
void LikeStatements(int Which) {
  try {
    if (Which == 1) {
      throw RuntimeError(err::kInvalidCall, "The same text.");
    } else if (Which == 2) {
      FAILS_HERE(throw RuntimeError(err::kInvalidCall, "The same text."));
    } else {
      DistantHelper(Which);
    }
    if (Which == 5) throw RuntimeError(err::kInvalidCall, "The same text.");
  } catch (...) {
    QDK_TRAILER(LikeStatements, QDK_PARAMETERS(Which), QDK_LOCALS());
  }
}

constexpr std::int32_t kFirstLikeCall = __LINE__ + 6;

int LikeCalls(int Which) {
  int Result = 0;
  try {
    if (Which == 0) {
      Result = DistantHelper(gZero) + 1;
    } else if (Which == 2) {
      Result = DistantHelper(gZero) + 1;
    } else if (Which == 4) {
      Result = DistantHelper(gZero) + 1;
    }
  } catch (...) {
    QDK_TRAILER(LikeCalls, QDK_PARAMETERS(Which), QDK_LOCALS(Result));
  }
  return Result;
}

// The calls must be identical, so they can't set the expected line themselves.
void EachLikeCall(int Which) {
  expectedLine = kFirstLikeCall + Which;
  LikeCalls(Which);
}

int Recursive(int Depth) {
  int Result = 0;
  try {
    if (Depth > 0) {
      Result = Recursive(Depth - 1) + 1;
    } else {
      FAILS_HERE(DistantHelper(gZero));
    }
  } catch (...) {
    QDK_TRAILER(Recursive, QDK_PARAMETERS(Depth), QDK_LOCALS(Result));
  }
  return Result;
}

class Zoom {
 public:
  double Level() const;
  void Level(double Value);

 private:
  std::string qdkDumpModuleVariables() const { return QDK_FIELDS(level_); }
  double level_ = 1;
};

double Zoom::Level() const {
  double Result = 0;
  try {
    Result = level_;
    if (level_ > 1) throw RuntimeError(err::kInvalidCall, "Not here.");
  } catch (...) {
    QDK_TRAILER(Level, QDK_PARAMETERS(), QDK_LOCALS(Result));
  }
  return Result;
}

void Zoom::Level(double Value) {
  try {
    if (Value == Level()) return;
    level_ = Level() / 2;
    FAILS_HERE(level_ = ToInt16(Value));
    level_ = Level() * 2;
  } catch (...) {
    QDK_TRAILER(Level, QDK_PARAMETERS(Value), QDK_LOCALS());
  }
}

template <typename T>
T InATemplate(T Value) {
  T Result{};
  try {
    Result = Value + 1;
    FAILS_HERE(Result = ToByte(static_cast<double>(Value)));
    Result = Value + 2;
  } catch (...) {
    QDK_TRAILER(InATemplate, QDK_PARAMETERS(Value), QDK_LOCALS(Result));
  }
  return Result;
}

void WithDestructors() {
  std::string First, Second;
  try {
    First = std::string(static_cast<std::size_t>(gZero + 40), 'x');
    const std::vector<std::string> words{First, "two", "three"};
    FAILS_HERE(Second = words[0] + ToText(ToInt32(4e9)));
    First = Second + words[1];
  } catch (...) {
    QDK_TRAILER(WithDestructors, QDK_PARAMETERS(), QDK_LOCALS(First, Second));
  }
}

// -- Errors that are raised by other code ---------------------------------------------------------------

void NoSuchElement() {
  std::array<int, 3> Values{};
  int Sum = 0;
  try {
    Sum = Values.at(static_cast<std::size_t>(gZero + 2));
    FAILS_HERE(Sum += Values.at(static_cast<std::size_t>(gZero + 3)));
    Sum += Values.at(static_cast<std::size_t>(gZero + 1));
  } catch (...) {
    QDK_TRAILER(NoSuchElement, QDK_PARAMETERS(), QDK_LOCALS(Values, Sum));
  }
}

void NoMemory() {
  std::vector<std::uint8_t> Pixels;
  try {
    Pixels.resize(static_cast<std::size_t>(gZero + 16));
    FAILS_HERE(Pixels.resize(Pixels.max_size() - static_cast<std::size_t>(gZero)));
    Pixels.clear();
  } catch (...) {
    QDK_TRAILER(NoMemory, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

[[gnu::noinline]] std::uintmax_t SizeOf(const std::string& file) { return std::filesystem::file_size(file); }

void NoSuchFile() {
  std::uintmax_t Size = 0;
  try {
    Size = 1;
    FAILS_HERE(Size = SizeOf("/no such file"));
    Size = 2;
  } catch (...) {
    QDK_TRAILER(NoSuchFile, QDK_PARAMETERS(), QDK_LOCALS(Size));
  }
}

void OfNoClass() {
  try {
    InlinedHelper(gZero + 1);
    FAILS_HERE(throw gZero + 5);
  } catch (...) {
    QDK_TRAILER(OfNoClass, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

/// The standard library's error is rethrown by a handler.
void PassedOn() {
  const auto passing = [](const std::string& number) {
    try {
      return std::stoi(number);
    } catch (const std::exception&) {
      throw;
    }
  };
  int Value = 0;
  try {
    Value = passing("5");
    FAILS_HERE(Value += passing("x"));
    Value += passing("6");
  } catch (...) {
    QDK_TRAILER(PassedOn, QDK_PARAMETERS(), QDK_LOCALS(Value));
  }
}

/// Other errors are raised and skipped between the failure and the trailer.
void AfterSkippedErrors() {
  int Value = 0;
  try {
    Value = 1;
    FAILS_HERE(Value = std::stoi("x"));
    Value = 2;
  } catch (...) {
    for (int i = 0; i < 3; ++i) QDK_RESUME_NEXT(std::stoi("y"));
    QDK_TRAILER(AfterSkippedErrors, QDK_PARAMETERS(), QDK_LOCALS(Value));
  }
}

// A worker's error is attributed to the statement that started the work.
[[gnu::noinline]] void OnAnotherThread(const std::function<void()>& work) {
  std::exception_ptr error;
  std::thread([&] {
    try {
      work();
    } catch (...) {
      error = std::current_exception();
    }
  }).join();
  if (error) RethrowHere(error);
}

void OnAWorker() {
  try {
    OnAnotherThread([] { InlinedHelper(gZero + 1); });
    FAILS_HERE(OnAnotherThread([] { InlinedHelper(gZero); }));
    OnAnotherThread([] { InlinedHelper(gZero + 2); });
  } catch (...) {
    QDK_TRAILER(OnAWorker, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

void OnAWorkerWithoutAStack() {
  try {
    OnAnotherThread([] { InlinedHelper(gZero + 1); });
    FAILS_HERE(OnAnotherThread([] { throw std::bad_alloc(); }));
    OnAnotherThread([] { InlinedHelper(gZero + 2); });
  } catch (...) {
    QDK_TRAILER(OnAWorkerWithoutAStack, QDK_PARAMETERS(), QDK_LOCALS());
  }
}

}  // namespace

const std::vector<Procedure>& RaisingRuntimeErrors() {
  static const std::vector<Procedure> procedures{
      {"RaisedDirectly", [] { RaisedDirectly(); }},
      {"RaisedByInlinedCall", [] { RaisedByInlinedCall(); }},
      {"RaisedFarBelow", [] { RaisedFarBelow(); }},
      {"FirstStatement", [] { FirstStatement(); }},
      {"InALoop", [] { InALoop(3); }},
      {"InALambda", [] { InALambda(); }},
      {"InAnEventsHandler", [] { InAnEventsHandler(); }},
      {"LikeStatements", [] { LikeStatements(gZero + 2); }},
      {"LikeCalls", [] { EachLikeCall(gZero); }},
      {"LikeCalls", [] { EachLikeCall(gZero + 2); }},
      {"LikeCalls", [] { EachLikeCall(gZero + 4); }},
      {"Recursive", [] { Recursive(gZero + 3); }},
      {"Level", [] { Zoom().Level(1e9); }},
      {"InATemplate", [] { InATemplate(300 + gZero); }},
      {"WithDestructors", [] { WithDestructors(); }},
      {"OnAWorker", [] { OnAWorker(); }},
      {"OnAWorkerWithoutAStack", [] { OnAWorkerWithoutAStack(); }},
  };
  return procedures;
}

const std::vector<Procedure>& RaisingOtherExceptions() {
  static const std::vector<Procedure> procedures{
      {"NoSuchElement", [] { NoSuchElement(); }}, {"NoMemory", [] { NoMemory(); }},
      {"NoSuchFile", [] { NoSuchFile(); }},       {"OfNoClass", [] { OfNoClass(); }},
      {"PassedOn", [] { PassedOn(); }},           {"AfterSkippedErrors", [] { AfterSkippedErrors(); }},
  };
  return procedures;
}

}  // namespace kestrel::procedures
