-- A table for the numbers of material databases, in PostgreSQL 15 or later:
--
--     psql -v ON_ERROR_STOP=1 -f schema.sql
--     qmdb export materials --csv | psql -c "\copy material_number FROM STDIN WITH (FORMAT csv, HEADER MATCH) WHERE value IS NOT NULL"
--
-- The columns are those of "qmdb export", in its order; HEADER MATCH holds the two together. One row is one number:
-- the WHERE leaves out the rows of phases and phase changes without values.

BEGIN;

CREATE TABLE material_number (
    substance_id bigint NOT NULL,
    substance text,
    formula text,
    cas text,
    aliases text,
    composition text,
    composition_ids text,
    phase_id bigint,
    phase text,
    state text,
    change_id bigint,
    change text,
    change_from bigint,
    change_to bigint,
    parameter_id bigint NOT NULL,
    parameter text,
    symbol text,
    units text,
    type text NOT NULL,
    source text,
    accuracy text,
    comments text,
    first_argument_name text,
    first_argument_units text,
    second_argument_name text,
    second_argument_units text,
    first_argument double precision,
    second_argument double precision,
    component text,
    value double precision NOT NULL,

    CONSTRAINT material_number_type CHECK (type IN ('C', 't', 'p', 'T', 'X')),
    CONSTRAINT material_number_component CHECK (component IN ('x', 'y', 'z')),
    CONSTRAINT material_number_owner CHECK (phase_id IS NULL OR change_id IS NULL),
    CONSTRAINT material_number_arguments CHECK (
        (first_argument IS NOT NULL) = (type <> 'C') AND (second_argument IS NOT NULL) = (type IN ('T', 'X'))
    ),
    CONSTRAINT material_number_key UNIQUE NULLS NOT DISTINCT (
        substance_id, phase_id, change_id, parameter_id, first_argument, second_argument, component
    )
);

CREATE INDEX material_number_parameter ON material_number (parameter, first_argument);
CREATE INDEX material_number_substance ON material_number (substance, parameter);

COMMENT ON TABLE material_number IS 'All numbers of a database of material properties, one row a number';
COMMENT ON COLUMN material_number.composition IS 'Of a mixture, by molar fractions: 0.75 Water + 0.25 Salt';
COMMENT ON COLUMN material_number.phase_id IS 'The phase that has the value, unique within its substance';
COMMENT ON COLUMN material_number.state IS 'Aggregate state of the phase: solid, liquid or gas';
COMMENT ON COLUMN material_number.change_id IS 'The phase change that has the value, unique within its substance';
COMMENT ON COLUMN material_number.units IS 'Units of value';
COMMENT ON COLUMN material_number.type IS 'C constant; t and p tables of one argument; T and X tables of two';
COMMENT ON COLUMN material_number.source IS 'Who measured or computed the value';
COMMENT ON COLUMN material_number.comments IS 'Comment lines of the data file, with " | " between them';
COMMENT ON COLUMN material_number.first_argument IS 'In first_argument_units; null for constants';
COMMENT ON COLUMN material_number.second_argument IS 'In second_argument_units; null but for tables of two arguments';
COMMENT ON COLUMN material_number.component IS 'x, y or z of a vector; null for scalars';
COMMENT ON COLUMN material_number.value IS 'In units; may be NaN or infinite';

COMMIT;
