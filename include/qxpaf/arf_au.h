/**
 * What programs need to know about the Australian plug-in, libqxarfau.so: its status codes, its find statuses and the
 * fields of its address record. Valid C99 and C++17; it declares no functions, those are in <qxpaf/paf.h>.
 *
 * The plug-in is not certified for address matching, and the identifiers that it answers are those of the data that
 * the database was built from: they are delivery point identifiers of the post office only if that data has such.
 */
#ifndef QXPAF_ARF_AU_H
#define QXPAF_ARF_AU_H

/**
 * Status codes of the plug-in, besides the library's own (6404 out of memory, 6406 buffer too small, 6408 not offered,
 * 6495 file missing). pafGetErrorDescription gives a sentence for each; directly after the failure it says in addition
 * what was wrong with this input and what the data has instead. After a failure of a search nothing was found: there is
 * no "best guess" in the buffer.
 */
enum PafAuStatus
{
  /* Searches. */

  /** Nothing in the text is a locality or a street, or the text is empty. Remedy: write street, number and locality. */
  PAF_AU_ERR_NOT_FOUND = 1,
  /** More than one address (or locality) fits, or a unit is missing. Remedy: add unit, state, postcode or street type;
      the description lists what fits. */
  PAF_AU_ERR_SEVERAL_FOUND = 2,
  /** The locality is known, the street is not in it, has another type, or is missing. Remedy: check the street's name,
      type and suffix; the description names streets of the same name. */
  PAF_AU_ERR_WRONG_STREET = 3,
  /** The street is known, the number, unit, level or lot is not there, or the number is missing. Remedy: check the
      number; the description says which numbers or units exist. */
  PAF_AU_ERR_WRONG_NUMBER = 4,
  /** No locality of that name, or state or postcode are not those of the locality. Remedy: check the last line, or let
      pafFixLastLineId correct it; the description says where the locality is. */
  PAF_AU_ERR_WRONG_LOCALITY = 5,
  /** The text has more than 4,096 bytes or 96 words. Remedy: pass one address at a time. */
  PAF_AU_ERR_INPUT_TOO_LONG = 6,

  /* Records and enumerations. */

  /** No address of the database has this identifier. Remedy: check the number and which database is open. */
  PAF_AU_ERR_UNKNOWN_DPID = 10,
  /** The query record cannot be used: the identifier is no number, or nothing usable is filled in. Remedy: fill field
     8, or fields 43 and 44, or fields 4 to 6. */
  PAF_AU_ERR_BAD_QUERY = 11,
  /** There is no enumeration to continue. Remedy: start one, for instance with pafGetAddressId. */
  PAF_AU_ERR_NO_ENUMERATION = 12,

  /* Properties. */

  /** No property of that name, or none with a value in this database. Remedy: ask for "Properties", which lists them.
   */
  PAF_AU_ERR_UNKNOWN_PROPERTY = 20,
  /** The property can only be read. Remedy: none is needed, its value is fixed. */
  PAF_AU_ERR_READ_ONLY_PROPERTY = 21,
  /** The property does not take this value, or a newer database does not know what it was set to. Remedy: see the
      description, which names the rule. */
  PAF_AU_ERR_PROPERTY_VALUE = 22,

  /* Layout. */

  /** The address does not fit the lines that the format option allows, or 32 lines of 512 bytes. Remedy: allow more or
      longer lines, or PAF_AU_FORMAT_ABBREVIATE. */
  PAF_AU_ERR_LAYOUT = 23,

  /* Opening; the text that comes with the code names the file. */

  /** The file is of another kind. Remedy: name the directory that the builder wrote. */
  PAF_AU_ERR_NOT_A_DATABASE = 30,
  /** The file has another format version. Remedy: build it again with the builder of this release. */
  PAF_AU_ERR_DATABASE_VERSION = 31,
  /** The file is shorter than it should be. Remedy: copy or build it again. */
  PAF_AU_ERR_DATABASE_TRUNCATED = 32,
  /** The file's contents do not agree with its checksums. Remedy: copy or build it again. */
  PAF_AU_ERR_DATABASE_DAMAGED = 33,
  /** The operation needs an open database, or Open was called twice. Remedy: open the database once, first. */
  PAF_AU_ERR_NOT_OPEN = 34,

  /* Barcodes: pafDpidToBarcode, pafCustInfoBarcode, pafBuildBarcode_, and the properties "Barcode:", "Barcode2:" and
     "Barcode3:". */

  /** The DPID is empty, has more than eight characters, or is not a number. Remedy: pass the DPID by itself. */
  PAF_AU_ERR_BARCODE_DPID = 40,
  /** The format control code is not known. Remedy: use 11, 45, 59, 62, 87 or 92. */
  PAF_AU_ERR_BARCODE_FORMAT = 41,
  /** The encoding of the customer information is neither N nor C. Remedy: write N for digits, C for characters. */
  PAF_AU_ERR_BARCODE_ENCODING = 42,
  /** The format carries no customer information. Remedy: use 59 or 62, or leave the information out. */
  PAF_AU_ERR_CUSTOMER_NOT_TAKEN = 43,
  /** The customer information is too long. Remedy: format 59 carries 5 characters or 8 digits, 62 carries 10 or 15. */
  PAF_AU_ERR_CUSTOMER_TOO_LONG = 44,
  /** The encoding does not have one of the characters. Remedy: N has digits; C letters, digits, space and #. */
  PAF_AU_ERR_CUSTOMER_CHARACTER = 45,

  /* Sort plans: pafPostcodeToBsp, pafPostcodeToNpsp, and the properties "BSP:", "NPSP:" and "SortPlanDate". */

  /** The database directory had no file sortplan.csv when it was opened. Remedy: build it with one, or put one there
      and open it again. */
  PAF_AU_ERR_NO_SORT_PLAN = 50,
  /** The sort plan cannot be used. Remedy: see the description, which names file, line and fault. */
  PAF_AU_ERR_BAD_SORT_PLAN = 51,
  /** The sort plan has no number for the postcode. Remedy: check the postcode, and whether the plan is current. */
  PAF_AU_ERR_NOT_IN_SORT_PLAN = 52,
  /** The text is no postcode. Remedy: pass four digits, a leading zero included. */
  PAF_AU_ERR_BAD_POSTCODE = 53,

  /* Searches by place. */

  /** The polygon cannot be read. Remedy: see the description, which names the fault. */
  PAF_AU_ERR_BAD_POLYGON = 60,
  /** Latitude, longitude or range cannot be read. Remedy: write degrees, latitude first; see the description. */
  PAF_AU_ERR_BAD_PLACE = 61,
  /** No address of the database has coordinates. Remedy: build it from data that has them. */
  PAF_AU_ERR_NO_PLACES = 62,
  /** No address lies within the range. Remedy: raise the property "LatLongSearchRange", or look at the filters. */
  PAF_AU_ERR_NOTHING_NEAR = 63,
  /** pafGetSearchStatistics does not know the kind, or the second text is of another kind. Remedy: Polygon, Radius,
      Postcode, Locality or State, with a text of that kind. */
  PAF_AU_ERR_BAD_STATISTICS = 64,
  /** One of the kinds of codes is not in the data, or another argument is refused. Remedy: see the description. */
  PAF_AU_ERR_BAD_CONCORDANCE = 65,

  /** A fault of the plug-in itself. Remedy: report it with the input that led to it. */
  PAF_AU_ERR_INTERNAL = 99
};

/** How the last search of an instance went, as pafGetFindStatusId answers it; also field 9 of records. */
enum PafAuFindStatus
{
  PAF_AU_FIND_NONE = 0,         /**< nothing has been searched yet */
  PAF_AU_FIND_MATCHED = 1,      /**< found as written, up to usual abbreviations */
  PAF_AU_FIND_CHANGED = 2,      /**< found, but something that was written was replaced or passed over */
  PAF_AU_FIND_SEVERAL = 3,      /**< PAF_AU_ERR_SEVERAL_FOUND */
  PAF_AU_FIND_NO_NUMBER = 4,    /**< PAF_AU_ERR_WRONG_NUMBER: the street is right */
  PAF_AU_FIND_NO_STREET = 5,    /**< PAF_AU_ERR_WRONG_STREET: the locality is right */
  PAF_AU_FIND_NO_LOCALITY = 6,  /**< PAF_AU_ERR_WRONG_LOCALITY */
  PAF_AU_FIND_NOTHING = 7,      /**< PAF_AU_ERR_NOT_FOUND, PAF_AU_ERR_UNKNOWN_DPID */
  PAF_AU_FIND_NOT_SEARCHED = 8, /**< the input was refused: too long, or a query that cannot be used */
  PAF_AU_FIND_PRIMARY_POINT = 9 /**< found is the building; the unit that was written is not in the data */
};

/** Flags of pafValidateFullAddressId; others do not count. */
enum PafAuValidateFlag
{
  PAF_AU_VALIDATE_LENIENT = 0, /**< corrects as lenient searches do */
  PAF_AU_VALIDATE_STRICT = 1   /**< takes only what the strict rules take */
};

/** Verdicts of pafValidateFullAddressId, one character. Only with the first two is the status 0. */
#define PAF_AU_VERDICT_AS_WRITTEN 'V'    /**< the address is there as it was written, with state and postcode */
#define PAF_AU_VERDICT_CORRECTED 'C'     /**< it was found, and something was corrected or completed */
#define PAF_AU_VERDICT_STREET_ONLY 'S'   /**< the street is there, the number or unit is not */
#define PAF_AU_VERDICT_LOCALITY_ONLY 'L' /**< the locality is there, the street is not */
#define PAF_AU_VERDICT_AMBIGUOUS 'A'     /**< more than one address fits */
#define PAF_AU_VERDICT_NONE 'N'          /**< nothing fits */

/**
 * Format options of pafFormatAddressId, to be added up. 0: title case, the last line in upper case, full forms, as many
 * lines as the address has; lines are separated by the property "Delimiter".
 */
enum PafAuFormat
{
  PAF_AU_FORMAT_UPPER = 1,           /**< everything in upper case */
  PAF_AU_FORMAT_LAST_LINE_TITLE = 2, /**< the last line in title case as well */
  PAF_AU_FORMAT_ABBREVIATE = 4,      /**< types abbreviated for print: "St", "Apt 3" */
  PAF_AU_FORMAT_ONE_LINE = 8,        /**< one line, its parts separated by ", " */
  PAF_AU_FORMAT_LINES_SHIFT = 8,     /**< n << this: at most n lines, up to 255; 0: no limit */
  PAF_AU_FORMAT_WIDTH_SHIFT = 16     /**< m << this: at most m characters a line, up to 32,767; 0: no limit */
};

/**
 * Fields of the address record, numbered from 1. Records are texts whose fields are separated by the property
 * "Delimiter" (TAB unless set); the property "OutputFields" chooses which fields answers have. A name in brackets is
 * the field's name in "OutputFields"; numbers not listed (27 to 39) are reserved and always empty.
 */
enum PafAuField
{
  PAF_AU_FIELD_ADDRESS_LINE_1 = 1, /**< [AddressLine1] the building's name if there is one, else the street line */
  PAF_AU_FIELD_ADDRESS_LINE_2 = 2, /**< [AddressLine2] the street line behind a building's name */
  PAF_AU_FIELD_ADDRESS_LINE_3 = 3, /**< [AddressLine3] always empty */
  PAF_AU_FIELD_LOCALITY = 4,       /**< [Locality] */
  PAF_AU_FIELD_STATE = 5,          /**< [State] its code, "NSW" */
  PAF_AU_FIELD_POSTCODE = 6,       /**< [Postcode] four digits */
  PAF_AU_FIELD_COUNTRY = 7,        /**< [Country] "AUSTRALIA" */
  PAF_AU_FIELD_DPID = 8,           /**< [DPID] the identifier, eight digits */
  PAF_AU_FIELD_MATCH_QUALITY = 9,  /**< [MatchQuality] a find status */
  PAF_AU_FIELD_BUILDING = 10,      /**< [Building] */
  PAF_AU_FIELD_UNIT_TYPE = 11,     /**< [UnitType] full form, "APARTMENT" */
  PAF_AU_FIELD_UNIT_NUMBER = 12,   /**< [UnitNumber] "3", "G07" */
  PAF_AU_FIELD_LEVEL_TYPE = 13,    /**< [LevelType] full form, "LEVEL" */
  PAF_AU_FIELD_LEVEL_NUMBER = 14,  /**< [LevelNumber] */
  PAF_AU_FIELD_LOT = 15,           /**< [Lot] */
  PAF_AU_FIELD_NUMBER_FIRST = 16,  /**< [NumberFirst] */
  PAF_AU_FIELD_NUMBER_FIRST_SUFFIX = 17,  /**< [NumberFirstSuffix] */
  PAF_AU_FIELD_NUMBER_LAST = 18,          /**< [NumberLast] of a range; empty otherwise */
  PAF_AU_FIELD_NUMBER_LAST_SUFFIX = 19,   /**< [NumberLastSuffix] */
  PAF_AU_FIELD_STREET_NAME = 20,          /**< [StreetName] */
  PAF_AU_FIELD_STREET_TYPE = 21,          /**< [StreetType] full form, "STREET" */
  PAF_AU_FIELD_STREET_SUFFIX = 22,        /**< [StreetSuffix] full form, "WEST" */
  PAF_AU_FIELD_POSTAL_TYPE = 23,          /**< [PostalType] "PO BOX", "LOCKED BAG" */
  PAF_AU_FIELD_POSTAL_NUMBER = 24,        /**< [PostalNumber] "123", "C96" */
  PAF_AU_FIELD_ALTERNATIVE_LOCALITY = 25, /**< [AlternativeLocality] another name of the locality */
  PAF_AU_FIELD_MATCHED_TEXT = 26,         /**< [MatchedText] the input as read; only in pafGetParsedInputId */
  PAF_AU_FIELD_SORT_PLAN_NUMBER =
      40,                    /**< [SortPlanNumber] of the postcode in the sort plan; attribute "sort_plan_number" */
  PAF_AU_FIELD_BARCODE = 41, /**< [Barcode] standard barcode; empty when identifiers were minted */
  PAF_AU_FIELD_SOURCE_IDENTIFIER = 42,     /**< [SourceIdentifier] attribute column "source_identifier" */
  PAF_AU_FIELD_LATITUDE = 43,              /**< [Latitude] degrees with six decimals, south negative */
  PAF_AU_FIELD_LONGITUDE = 44,             /**< [Longitude] */
  PAF_AU_FIELD_GEOCODE_RELIABILITY = 45,   /**< [GeocodeReliability] attribute column "geocode_reliability" */
  PAF_AU_FIELD_MESH_BLOCK = 46,            /**< [MeshBlock] attribute column "mesh_block" */
  PAF_AU_FIELD_STATISTICAL_AREA = 47,      /**< [StatisticalArea] attribute column "statistical_area" */
  PAF_AU_FIELD_LOCAL_GOVERNMENT_AREA = 48, /**< [LocalGovernmentArea] attribute column "local_government_area" */
  PAF_AU_FIELD_COUNT = 48                  /**< fields of a whole record */
};

/** The weight of a correspondence, for the last argument of pafGetNextGifConcordance. All 0 at the end. */
struct PafAuConcordance
{
  unsigned int addresses; /**< addresses that have both codes */
  unsigned int total;     /**< addresses that have the first code and any of the second kind */
  double percent;         /**< addresses of total, in percent */
};

#endif
