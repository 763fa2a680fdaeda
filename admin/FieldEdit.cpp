#include "admin/FieldEdit.h"

namespace quillary {

namespace {

// Whether type or options are others than in the database.
bool IsRetyped(const FieldEdit& edit) {
    const Field& field = edit.definition.field;
    return !edit.former || edit.former->type != field.type ||
           EncodeFieldType(edit.former->type, edit.former->options) != EncodeFieldType(field.type, field.options);
}

}  // namespace

FieldDefinition Settled(const FieldEdit& edit) {
    FieldDefinition settled = edit.definition;
    Field& field = settled.field;
    if (IsRetyped(edit)) {
        field.storedType.reset();
        DecodeFieldType(EncodeFieldType(field.type, edit.definition.field.options), field.type, field.options);
    } else {
        field.options = edit.former->options;
    }
    return settled;
}

}  // namespace quillary
