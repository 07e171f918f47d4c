# SPDX-License-Identifier: MIT
"""Validates JSON against a schema, for the tests."""
import json
import sys


def validator(path):
    """For the schema in the file, which must be one; ends the test when Python's jsonschema is not there."""
    try:
        import jsonschema  # pylint: disable=import-outside-toplevel
    except ModuleNotFoundError:
        sys.exit("The Python module jsonschema is missing; on Debian the package python3-jsonschema has it.")
    schema = json.loads(path.read_text())
    kind = jsonschema.validators.validator_for(schema)
    kind.check_schema(schema)
    return kind(schema)


def problems_of(document, schema):
    """What in the document is not as the schema says, as a list of texts."""
    return [f"not as the schema says, at {error.json_path}: {error.message[:200]}" for error in schema.iter_errors(document)]
