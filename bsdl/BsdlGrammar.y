/* The part of BSDL (IEEE 1149.1, annex B) that a boundary-scan tool needs, on two levels in one
   grammar: the VHDL-like statements, and the sub-languages inside the strings of some attributes.
   When such a statement is complete, a mid-rule action pushes its string back into the scanner
   after a mode token, which picks the list rule that reads it.

   The mid-rule actions must run before the parser asks for the next token, or the mode token would
   come one token late. They do, because every state that holds such an action has nothing but
   default reductions: keep it so when changing rules.

   Names inside the actions: see BsdlActions.h. A rule that ends in `error` only says where the
   syntax error lay, and ends the parse. As the parser drops states until one takes the error, an
   error in a statement after the port clause also ends in the port clause's explanation. */

%code requires {
#include <string>
class OmBsdlActions;
}

%code {
#include "bsdl/BsdlActions.h"
#include "bsdl/BsdlScanner.h"
#include "platform/Translation.h"

// No rule nests, so a deeper stack can only come from a defect.
#define YYINITDEPTH 200
#define YYMAXDEPTH 200

static int bsdllex(const std::string** value) {
    const int token = NextToken();
    *value = TokenText();
    return token;
}

// What the generated parser itself has to say.
[[maybe_unused]] static constexpr const char* kOwnMessages[] = {ForTranslation("syntax error"),
                                                                ForTranslation("memory exhausted")};

static void bsdlerror(OmBsdlActions& actions, const char* message) {
    actions.Error(ToLocal(Translated(message)));
}
}

%define api.prefix {bsdl}
%define api.pure full
%define api.token.prefix {BSDL_}
%define api.value.type {const std::string*} /* in the scanner's pool; null for most tokens */
%parse-param {OmBsdlActions& actions}

%token ENTITY 258 PORT 259 GENERIC 260 USE 261 ATTRIBUTE 262 IS 263 OF 264 CONSTANT 265 END 266
%token TRUE 267 FALSE 268 SIGNAL 269 LOW 270 BOTH 271
%token IN 272 OUT 273 INOUT 274 BUFFER 275 LINKAGE 276 BIT 277 BIT_VECTOR 278 TO 279 DOWNTO 280
%token PACKAGE 281 BODY 282 TYPE 283 SUBTYPE 284 RECORD 285 ARRAY 286 POSITIVE 287 RANGE 288
%token REGISTER_ACCESS_MODE 289 INSTRUCTION_OPCODE_MODE 290 INSTRUCTION_CAPTURE_MODE 291
%token INSTRUCTION_PRIVATE_MODE 292 TAP_SCAN_CLOCK_MODE 293 CLOCK_CLAUSE_END_MODE 294
%token BOUNDARY_REGISTER_MODE 295 IDCODE_REGISTER_MODE 296 USERCODE_REGISTER_MODE 297
%token PIN_MAP_STRING_MODE 298 RESERVED 299
%token CAPTURES 300 IDENTIFIER 301 STRING 302 DECIMAL 303 BIT_PATTERN 304 REAL 305
%token CONCAT 306 SEMICOLON 307 COMMA 308 LPAREN 309 RPAREN 310 LBRACKET 311 RBRACKET 312
%token COLON 313 STAR 314 ASSIGN 315 DOT 316 ILLEGAL 317

%%

design:
    entity_head entity_body entity_tail { YYACCEPT; } /* whatever follows */
;

entity_head:
    ENTITY IDENTIFIER IS { actions.SetEntity($2); }
|   error {
        actions.Info(ForTranslation("improper entity declaration; may be this is not a BSDL file"));
        YYABORT;
    }
;

entity_tail:
    END IDENTIFIER SEMICOLON
|   error {
        actions.Info(ForTranslation("improper entity declaration"));
        YYABORT;
    }
;

entity_body:
    generic_clause port_clause use_list attribute_list constant_list attribute_list
;

generic_clause:
    GENERIC LPAREN IDENTIFIER COLON type_name RPAREN SEMICOLON
|   GENERIC LPAREN IDENTIFIER COLON type_name ASSIGN string_expr RPAREN SEMICOLON {
        actions.SetDefaultPinMapping();
    }
|   error {
        actions.Info(ForTranslation("improper generic parameter declaration"));
        YYABORT;
    }
;

port_clause:
    PORT LPAREN port_list RPAREN SEMICOLON
|   error {
        actions.Info(ForTranslation("improper port declaration"));
        YYABORT;
    }
;

port_list:
    port_item
|   port_list SEMICOLON port_item
;

port_item:
    { actions.BeginPorts(); } name_list COLON direction port_type { actions.EndPorts($direction); }
;

name_list:
    IDENTIFIER { actions.AddPortName($1); }
|   name_list COMMA IDENTIFIER { actions.AddPortName($3); }
;

direction:
    IN
|   OUT
|   BUFFER
|   INOUT
|   LINKAGE
;

port_type:
    BIT { actions.SetScalar(); }
|   BIT_VECTOR LPAREN range RPAREN
;

range:
    DECIMAL TO DECIMAL {
        if (!actions.SetBounds($1, $3))
            YYABORT;
    }
|   DECIMAL DOWNTO DECIMAL {
        if (!actions.SetBounds($1, $3))
            YYABORT;
    }
;

use_list:
    use_clause
|   use_list use_clause
;

use_clause:
    USE IDENTIFIER DOT IDENTIFIER SEMICOLON
;

attribute_list:
    attribute_item
|   attribute_list attribute_item
;

attribute_item:
    attribute_decl
|   attribute_spec
;

attribute_spec:
    ATTRIBUTE IDENTIFIER[name] OF IDENTIFIER[target] COLON entity_class[class] IS {
        actions.BeginAttribute($name);
    }
    clock_clause value SEMICOLON {
        if (!actions.EndAttribute($name, $target, $class, $value))
            YYABORT;
    }
    attribute_body
;

attribute_body:
    %empty
|   REGISTER_ACCESS_MODE register_list SEMICOLON
|   INSTRUCTION_OPCODE_MODE opcode_list SEMICOLON
|   INSTRUCTION_CAPTURE_MODE pattern_list SEMICOLON
|   INSTRUCTION_PRIVATE_MODE private_list SEMICOLON
|   BOUNDARY_REGISTER_MODE cell_list SEMICOLON
|   IDCODE_REGISTER_MODE pattern_list SEMICOLON
|   USERCODE_REGISTER_MODE pattern_list SEMICOLON
;

clock_clause:
    %empty
|   TAP_SCAN_CLOCK_MODE LPAREN clock_rate COMMA stop_state RPAREN { actions.EndClockClause(); }
;

clock_rate:
    REAL
|   DECIMAL
;

entity_class:
    ENTITY
|   SIGNAL
;

value:
    string_expr
|   IDENTIFIER
|   DECIMAL
|   boolean
|   CLOCK_CLAUSE_END_MODE
;

attribute_decl:
    ATTRIBUTE attribute_name COLON type_name SEMICOLON
;

attribute_name:
    IDENTIFIER
;

constant_list:
    constant_item
|   constant_list constant_item
;

constant_item:
    constant_decl
|   constant_spec
;

constant_decl:
    CONSTANT IDENTIFIER COLON IDENTIFIER SEMICOLON
;

constant_spec:
    CONSTANT IDENTIFIER[name] COLON IDENTIFIER[type] ASSIGN value SEMICOLON {
        if (!actions.EndConstant($name, $type))
            YYABORT;
    }
    constant_body
;

constant_body:
    %empty
|   PIN_MAP_STRING_MODE pin_map_list SEMICOLON
;

type_name:
    IDENTIFIER
|   error {
        actions.Info(ForTranslation("error in attribute type identification"));
        YYABORT;
    }
;

pin_map_list:
    pin_map_item
|   pin_map_list COMMA pin_map_item
;

pin_map_item:
    IDENTIFIER { actions.BeginPinMapPort($1); } COLON { actions.BeginPinList(-1); } pin_spec
;

pin_spec:
    pin_entry
|   LPAREN { actions.BeginPinList(0); } pin_entries RPAREN
;

pin_entries:
    pin_entry
|   pin_entries COMMA pin_entry
;

pin_entry:
    pin_id { actions.AddPin($1); }
;

pin_id:
    IDENTIFIER
|   DECIMAL
;

stop_state:
    LOW
|   BOTH
;

boolean:
    TRUE
|   FALSE
;

opcode_list:
    opcode_item
|   opcode_list COMMA opcode_item
|   error {
        actions.Info(ForTranslation("error in Instruction_Opcode attribute statement"));
        YYABORT;
    }
;

opcode_item:
    IDENTIFIER LPAREN { actions.BeginInstruction($1); } pattern_list RPAREN
;

pattern_list:
    pattern { actions.AddPattern($1); }
|   pattern_list COMMA pattern { actions.AddPattern($3); }
;

pattern:
    BIT_PATTERN
|   IDENTIFIER
|   DECIMAL
;

private_list:
    private_item
|   private_list COMMA private_item
|   error {
        actions.Info(ForTranslation("error in Opcode List"));
        YYABORT;
    }
;

private_item:
    IDENTIFIER
;

register_list:
    register_item
|   register_list COMMA register_item
;

register_item:
    register_name LPAREN register_instrs RPAREN
;

register_name:
    IDENTIFIER
|   IDENTIFIER LBRACKET DECIMAL RBRACKET
;

register_instrs:
    register_instr
|   register_instrs COMMA register_instr
;

register_instr:
    IDENTIFIER
|   IDENTIFIER CAPTURES pattern
;

cell_list:
    cell_item
|   cell_list COMMA cell_item
|   error {
        actions.Info(ForTranslation("error in Boundary Cell description"));
        YYABORT;
    }
;

cell_item:
    DECIMAL LPAREN { actions.BeginCell(); } cell_spec RPAREN {
        if (!actions.EndCell($1))
            YYABORT;
    }
;

cell_spec:
    cell_main
|   cell_main COMMA cell_disable
;

cell_main:
    IDENTIFIER COMMA cell_port COMMA cell_function COMMA cell_safe {
        actions.SetCell($1, $cell_port, $cell_function, $cell_safe);
    }
;

cell_port:
    IDENTIFIER
|   IDENTIFIER LPAREN DECIMAL RPAREN { $$ = actions.MakeElementName($1, $3); }
|   STAR
;

cell_function:
    IDENTIFIER {
        if (!actions.CheckCellFunction($1))
            YYABORT;
    }
;

cell_safe:
    IDENTIFIER
|   DECIMAL
;

cell_disable:
    DECIMAL COMMA DECIMAL COMMA disable_result { actions.SetCellDisable($1, $3, $5); }
;

disable_result:
    IDENTIFIER {
        if (!actions.CheckDisableResult($1))
            YYABORT;
    }
;

string_expr:
    STRING { actions.BeginString($1); }
|   string_expr CONCAT STRING { actions.AppendString($3); }
;
