#include <cstdlib>
#include <cstring>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <kestra/variables/number_text.h>
#include <kestra/variables/variable.h>
#include <platform/replaceable.h>

namespace {

/// A variable from a note: "#1.5" a number, "'abc" a short text, ">abc" a heap text, "~" a heap text without
/// buffer, "b" a block, "f" a function, "-" empty; anything else is no variable at all.
std::unique_ptr<CVariable> made(const std::string& note) {
    const char* text = note.c_str() + 1;
    auto variable = std::make_unique<CVariable>("v");
    switch (note[0]) {
        case '-':
            return variable;
        case '#':
            return std::make_unique<CVariable>(std::strtod(text, nullptr));
        case '>':
            return std::make_unique<CVariable>("v", CString(text));
        case '~':
            return std::make_unique<CVariable>("v", CVariable::vtText, nullptr);
        case 'b':
            return std::make_unique<CVariable>(::operator new(16));
        case 'f':
            return std::make_unique<CVariable>("v", CVariable::Function{});
        case '\'':
            break;
        default:
            return nullptr;
    }
    variable->m_type = CVariable::vtShortText;
    std::memcpy(variable->m_value.shortText, text, note.size() - 1);
    return variable;
}

std::string noted(CVariable& variable) {
    const char* text = variable.lpctstr();
    if (text != nullptr) return (variable.m_type == CVariable::vtText ? ">" : "'") + std::string(text);
    if (variable.m_type == CVariable::vtNumber) return "#" + kestra::numberToText(variable.m_value.number);
    return std::string(1, "-.f..~b"[variable.m_type]);
}

int operate(CVariable& variable, char operation, CVariable* other) {
    int (CVariable::*const operations[])(CVariable*) = {&CVariable::fAjoute,     &CVariable::fSubstract,
                                                        &CVariable::fMultiplie,  &CVariable::fDivise,
                                                        &CVariable::fSetValFrom, &CVariable::Compare};
    if (operation == 'T') return variable.ToCstring();
    return (variable.*operations[std::string_view("+-*/=?").find(operation)])(other);
}

/// Runs cases "variable operation operand result variable-after"; the operand "self" is the variable itself.
void check(const char* cases) {
    std::istringstream table(cases);
    std::string left, right, after;
    char operation = 0;
    int result = 0;
    while (table >> left >> operation >> right >> result >> after) {
        const auto variable = made(left);
        const auto other = made(right);
        EXPECT_EQ(operate(*variable, operation, right == "self" ? variable.get() : other.get()), result)
            << left << " " << operation << " " << right;
        EXPECT_EQ(noted(*variable), after) << left << " " << operation << " " << right;
    }
    EXPECT_EQ(left, "end");
}

}  // namespace

TEST(CVariable, OperationsByTypes) {
    check(R"(
        - + #2     1 #2      - + 'ab    1 'ab     - + >abc   1 >abc    - + b     0 -       - + -     0 -
        - + none   0 -       b + #1     0 b       f + >a     0 f       #1 + #2   1 #3      #1 + b    0 #1
        #1 + >12.5 1 #13.5   #1 + 'abc  1 #1      #1 + >inf  1 #1      #1 + >-inf 1 #-inf  #1 + >    1 #1
        #1 + ~     0 #1      #1 + none  0 #1      #0 + >1e999 1 #inf   #1.7e308 + #1.7e308 1 #inf
        >x= + #0.5 1 >x=0.5  'x= + '1   1 >x=1    >a + >b    1 >ab     >a + ~    1 >a      'a + b    1 >a
        >a + none  1 >a      ~ + >b     1 >b      >a + #1e300 1 >a1e+300  '1234567 + 'abc 1 >1234567abc
        '12345678 + - 1 >1234567                  #inf + #-inf 1 #-nan
        #10 - >abc 1 #10     #10 - '4   1 #6      - - #4     1 #-4     - - b     0 #0      - - none  0 #0
        >1 - #1    0 >1      #1 - ~     0 #1      #-1.7e308 - #1.7e308 1 #-inf
        - * #4     1 #4      #3 * >1e400 1 #inf   #1e-300 * #1e-300 1 #0                   - * -     0 #1
        - / #4     1 #0.25   #1 / >abc  1 #inf    #-1 / #0   1 #-inf   b / #1    0 b       #0 / #0   1 #-nan
        #1 = >abc  1 >abc    >a = #7    1 #7      >a = 'b    1 'b      >a = b    0 -       b = ~     1 >
        >a = none  0 -       >a T none  1 >a      ~ T none   1 ~       'ab T none 1 >ab    #1234567 T none 1 >1.23457e+06
        - T none   0 >       b T none   0 >       f T none   0 >       end)");
}

TEST(CVariable, TheOperandMayBeTheVariableItselfOrShareItsText) {
    check(R"(
        #3 + self  1 #6      'ab + self 1 >abab   >abc + self 1 >abcabc   - + self  0 -    b + self  0 b
        #3 - self  1 #0      - / self   1 #1      #0 / self  1 #-nan      #1e200 * self 1 #inf
        >abc = self 1 >abc   'a = self  1 'a      b = self   0 -          >abc ? self 0 >abc   end)");
    const std::string huge(100'000, 'x');
    CVariable first("first", CString(huge));
    CVariable second = first;
    EXPECT_EQ(second.fSetValFrom(&first), 1);
    first.m_type = CVariable::vtEmpty;
    EXPECT_EQ(second.fAjoute(&second), 1);
    EXPECT_EQ(second.lpctstr(), huge + huge);
}

TEST(CVariable, KeptAHeapTextComparesWithAShortTextOnlyWhenTheShortTextIsOnTheLeft) {
    check(R"(
        #2 ? #1    1 #2      #1 ? #2   -1 #1      #2 ? #2    0 #2      #inf ? #-inf 1 #inf   #nan ? #1  0 #nan
        #2 ? '2   -2 #2      '2 ? #2   -2 '2      'abc ? >abc 0 'abc   >abc ? 'abc -2 >abc   'ab ? 'abc -1 'ab
        >b ? >abcdefghi 1 >b ~ ? >a    -2 ~       >a ? ~    -2 >a      #2 ? >2   -2 #2       - ? >a    -2 -
        - ? -     -2 -       b ? >a    -2 b       'a ? b    -2 'a      #0 ? none -2 #0       'é ? >z    1 'é   end)");
}

TEST(CVariable, KeptATextWithLeadingBlanksIsIgnoredInAnAdditionOnly) {
    CVariable number(10.0), text("t", CString(" 4"));
    EXPECT_EQ(number.fAjoute(&text), 1);
    EXPECT_EQ(number.m_value.number, 10.0);
    number.fSubstract(&text);
    EXPECT_EQ(number.m_value.number, 6.0);
}

TEST(CVariable, KeptCopiesShareWhatIsOwned) {
    const std::string name(100'000, 'n');
    CVariable owner(name.c_str(), CVariable::vtRecord, new CVariable::Record{{"1", "2", "3", "4", "5"}});
    CVariable copy;
    copy = owner;
    EXPECT_EQ(std::string(copy.m_name, sizeof copy.m_name), name.substr(0, 20));
    EXPECT_EQ(copy.m_value.record, owner.m_value.record);
    owner.m_type = CVariable::vtEmpty;
}

TEST(CVariable, LetsGoOfRecordsetsAndSwallowsFailures) {
    static std::string calls;
    const RecordsetRelease release{
        [](MyRecordsetPtr*) { throw std::runtime_error(calls += "interface "); },
        [](MyRecordsetPtr*) { throw std::runtime_error(calls += "holder "); },
    };
    const platform::Replaced replaced(replaceRecordsetRelease, release);
    char place = 0;
    auto* const recordset = reinterpret_cast<MyRecordsetPtr*>(&place);
    CVariable plain(recordset);
    EXPECT_TRUE(plain.prs());
    plain.Free();
    EXPECT_FALSE(plain.prs());
    { const CVariable live("live", CVariable::vtLiveRecordset, recordset); }
    EXPECT_EQ(calls, "holder interface holder ");
}
