# Prints a document with what its blocks of code claim to be. A comment above a block says so:
#   <!-- source: Examples/Guide/Job.h -->         that file
#   <!-- source: Examples/Guide/Job.h, make -->   what stands in it between two lines "// [make]", without its indentation
#   <!-- output: Examples/Guide/01-FirstBag.cpp -->   what that program prints; with a name, what it prints between two
#                                                     lines "[name]"
# Every block of C++ has to be the source of something that is compiled.
#   awk -v root=FOLDER -v outputs=FOLDER -f ShownCode.awk DOCUMENT    outputs: files named like the program, '_' for '/'

function Fail(iText) {
    print FILENAME ":" FNR ": " iText > "/dev/stderr"
    gHasFailed = 1
    exit 1
}

# Prints a file, or the named region of it. iMark: what the lines around a region look like.
function Show(iFile, iRegion, iMark,    lLine, lIsInside, lIndent, lCount, lStatus) {
    lIsInside = iRegion == ""
    lIndent = ""
    while ((lStatus = (getline lLine < iFile)) > 0) {
        if (lLine ~ iMark) {
            if (iRegion != "" && lLine ~ "\\[" iRegion "\\]") {
                lIsInside = !lIsInside
                lIndent = lLine
                sub(/[^ ].*$/, "", lIndent)
            }
        } else if (lIsInside) {
            sub("^" lIndent, "", lLine)
            print lLine
            lCount++
        }
    }
    close(iFile)
    if (lStatus < 0 || lCount == 0 || (lIsInside && iRegion != "")) {
        Fail("there is no " iFile (iRegion == "" ? "" : " with a region [" iRegion "]"))
    }
}

function Fill(iMark,    lParts, lKind) {
    lKind = iMark ~ /^<!-- source: / ? "source" : "output"
    gsub(/^<!-- [a-z]+: | -->$/, "", iMark)
    split(iMark, lParts, ", ")
    if (lKind == "source") {
        Show(root "/" lParts[1], lParts[2], "^ *// \\[[a-z-]+\\]$")
    } else {
        gsub(/\//, "_", lParts[1])
        Show(outputs "/" lParts[1], lParts[2], "^\\[[a-z-]+\\]$")
    }
}

/^<!-- (source|output): [^ ]*(, [a-z-]+)? -->$/ {
    gMark = $0
    print
    next
}

/^ *```/ {
    print
    gIsBlock = !gIsBlock
    if (gIsBlock && gMark != "") {
        Fill(gMark)
        gIsFilled = 1
    } else if (gIsBlock && tolower($0) ~ /^ *``` *(c|cc|cpp|cxx|h|hpp|c\+\+)$/) {
        Fail("a block of C++ without a comment above it that names its source")
    } else if (!gIsBlock) {
        gIsFilled = 0
    }
    gMark = ""
    next
}

gMark != "" {
    Fail("no block of code follows the comment that names what it shows")
}

!gIsFilled {
    print
}

END {
    if (!gHasFailed && (gIsBlock || gMark != "")) {
        Fail("the last block of code has no end")
    }
}
