# Reads clang's dump of virtual tables and prints the slots of each class that VirtualTables.cpp probes, as text like
# the golden file (kind=text) or as the tables of a document (kind=markdown).

# The function in a line of the dump, as "Name(parameters) const -> result".
function Signature(iLine,    lParenthesis, lPrefix, lSpace, lName, lResult) {
    sub(/^ *[0-9]+ \| /, "", iLine)
    sub(/ \[pure\]$/, "", iLine)
    gsub(/_Bool/, "bool", iLine)
    gsub(/<PropertyBag>/, "<QTalBase::PropertyBag>", iLine) # the dump spells template arguments as the header does
    if (iLine ~ /\[complete\]$/) {
        return "destructor (complete)"
    }
    if (iLine ~ /\[deleting\]$/) {
        return "destructor (deleting)"
    }
    lParenthesis = index(iLine, "(")
    lPrefix = substr(iLine, 1, lParenthesis - 1)
    lSpace = length(lPrefix)
    while (lSpace > 0 && substr(lPrefix, lSpace, 1) != " ") {
        lSpace--
    }
    lName = substr(lPrefix, lSpace + 1)
    lResult = substr(lPrefix, 1, lSpace - 1)
    while (lName ~ /^[*&]/) { # the dump glues these to the name: "const wchar_t *Class::Name"
        lResult = lResult substr(lName, 1, 1)
        lName = substr(lName, 2)
    }
    sub(/^.*::/, "", lName)
    iLine = lName substr(iLine, lParenthesis) " -> " lResult
    gsub(/ \*/, "*", iLine)
    gsub(/ &/, "\\&", iLine)
    return iLine
}

function Heading(iText) {
    if (kind == "markdown") {
        printf "\n## %s\n\n| slot | function |\n|---:|---|\n", iText
    } else {
        printf "\n%s\n", iText
    }
}

function Slot(iSlot, iText) {
    if (kind == "markdown") {
        printf "| %d | `%s` |\n", iSlot, iText
    } else {
        printf "%3d %s\n", iSlot, iText
    }
}

# Prints the tables of the class that has just been read, the one at the start of the object first.
function Flush(    lTable, lSlot) {
    for (lTable = 1; gClass != "" && lTable <= gTables; lTable++) {
        Heading(lTable == 1 ? gClass : gClass " as " gBase[lTable])
        for (lSlot = 0; lSlot < gSlots[lTable]; lSlot++) {
            Slot(lSlot, gSignature[lTable, lSlot])
        }
    }
    gClass = ""
    gInside = 0
}

/^Vtable for 'Probe'/ {
    gInside = 1
    gTables = 0
    next
}

/^$/ { Flush() }

!gInside { next }

/ RTTI$/ { # stands before the addresses of the classes that share a table, and those before its functions
    gTables++
    gSlots[gTables] = 0
    gBase[gTables] = ""
    next
}

/-- \(.*vtable address --$/ {
    if (gBase[gTables] == "") {
        gBase[gTables] = $0
        sub(/^ *-- \(/, "", gBase[gTables])
        sub(/, [0-9]+\) vtable address --$/, "", gBase[gTables])
    }
    next
}

/>::Anchor\(\)/ { # the probe's own function, whose line names the class that the probe derives from
    gClass = $0
    sub(/^.* Probe</, "", gClass)
    sub(/>::Anchor.*$/, "", gClass)
    next
}

/^ *[0-9]+ \| / && !/ \| (vbase_offset|vcall_offset|offset_to_top) / {
    gSignature[gTables, gSlots[gTables]++] = Signature($0)
}

END { Flush() }
