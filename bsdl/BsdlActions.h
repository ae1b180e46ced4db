// What the grammar does with what it has read: the actions of its rules, and the state between
// them. Private to the parser.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

class OmBsdlData;
class OmBsdlParserCallback;

// An operation that answers false has reported an error, and the parse must end.
class OmBsdlActions {
  public:
    using Text = const std::string*; // lives as long as the parse

    OmBsdlActions(OmBsdlData& data, OmBsdlParserCallback* callback)
        : data_(data), callback_(callback) {}

    void Error(const std::string& message); // counted, and told with its place in the file
    void Info(const char* message);         // for translation

    bool HasErrors() const { return errorCount_ > 0; }

    void SetEntity(Text name);
    void SetDefaultPinMapping(); // from the current string

    void BeginPorts() { portNames_.clear(); }

    void AddPortName(Text name) { portNames_.push_back(*name); }

    void SetScalar() { left_ = right_ = -1; }

    bool SetBounds(Text left, Text right);
    void EndPorts(Text direction);

    // A statement whose string has an inner language makes the scanner read that next.
    void BeginAttribute(Text name);
    void EndClockClause();
    bool EndAttribute(Text name, Text target, Text targetClass,
                      Text value); // null value: no record
    bool EndConstant(Text name, Text type);

    void BeginPinMapPort(Text port) { pinMapPort_ = *port; }

    void BeginPinList(int32_t firstIndex) { pinIndex_ = firstIndex; }

    void AddPin(Text pin);

    void BeginInstruction(Text name) { instruction_ = *name; }

    void AddPattern(Text pattern); // meaning given by the attribute it stands in

    void BeginCell() { cell_ = {}; }

    void SetCell(Text cell, Text port, Text function, Text safe);
    void SetCellDisable(Text controlCell, Text value, Text result);
    bool EndCell(Text number);
    bool CheckCellFunction(Text function);
    bool CheckDisableResult(Text result);
    Text MakeElementName(Text name, Text index); // "NAME(3)"

    void BeginString(Text quoted);
    void AppendString(Text quoted);

  private:
    struct JoinedString {
        std::string text; // without quotes
        int32_t line;     // of the first of its parts
    };

    struct CellTexts {
        std::string cell, port, function, safe, controlCell, disableValue, disableResult;
    };

    JoinedString TakeString();
    bool PushInnerText(int modeToken);

    OmBsdlData& data_;
    OmBsdlParserCallback* callback_; // not owned, may be null
    int errorCount_ = 0;
    std::vector<std::string> portNames_;
    int32_t left_ = -1;
    int32_t right_ = -1;
    std::string attribute_;
    std::string pinMap_;
    std::string pinMapPort_;
    int32_t pinIndex_ = -1;
    std::string instruction_;
    std::optional<JoinedString> string_; // none in a statement whose value is no string
    CellTexts cell_;
};
