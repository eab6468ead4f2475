# Doxygen's view of a header: prints it line by line, its plain comments turned into ones that Doxygen reads.
#   - The comment at the top describes the file; one before a declaration describes that declaration, and all that
#     follow it without an empty line between.
#   - What stands behind a member describes the member.
#   - Indented lines are code after an empty comment line, and else the items of a list.
# A comment means what stands there, so what Doxygen or Markdown would take for a command is escaped. The number of
# lines stays the same, so that what Doxygen says of a line is true of the header.

# Escapes what stands outside of `code`, and a sign at the beginning that would make an item of a list.
function Escaped(iText,    lParts, lCount, lIndex, lResult) {
    lCount = split(iText, lParts, "`")
    for (lIndex = 1; lIndex <= lCount; lIndex++) {
        if (lIndex % 2 == 1) {
            gsub(/[\\@#%*]/, "\\\\&", lParts[lIndex])
            gsub(/&/, "\\&amp;", lParts[lIndex])
            gsub(/</, "\\&lt;", lParts[lIndex])
            gsub(/>/, "\\&gt;", lParts[lIndex])
            gsub(/"/, "\\&quot;", lParts[lIndex]) # between quotation marks Doxygen reads neither escapes nor commands
        }
        lResult = lResult (lIndex > 1 ? "`" : "") lParts[lIndex]
    }
    sub(/^[-+] /, "\\\\&", lResult)
    return lResult
}

function IsComment(iLine) {
    return iLine ~ /^ *\/\//
}

# The text of a comment line behind "// ".
function TextOf(iLine) {
    sub(/^ *\/\/ ?/, "", iLine)
    return iLine
}

# Ends what Rewrite has begun: a piece of code in the empty line behind it, a list in its own last line.
function EndBlock(iBlock, iLine) {
    if (iBlock == "code") {
        gLines[iLine] = "/// \\endcode"
    } else if (iBlock == "list") {
        gLines[iLine - 1] = gLines[iLine - 1] "</ul>"
    }
}

# Rewrites the comment in the lines from iFirst to iLast.
function Rewrite(iFirst, iLast,    lLine, lText, lIndent, lBlock) {
    lBlock = ""
    for (lLine = iFirst; lLine <= iLast; lLine++) {
        lText = TextOf(gLines[lLine])
        lIndent = match(lText, /[^ ]/) - 1
        if (lBlock == "code" && lText != "") {
            gLines[lLine] = "/// " lText
        } else if (lIndent < 2) {
            gLines[lLine] = "/// " Escaped(lText)
            EndBlock(lBlock, lLine)
            lBlock = ""
        } else if (lBlock == "" && TextOf(gLines[lLine - 1]) ~ /^\/? ?$/) {
            gLines[lLine - 1] = "/// \\code{.cpp}"
            gLines[lLine] = "/// " lText
            lBlock = "code"
        } else {
            sub(/^ +/, "", lText)
            gLines[lLine] = "/// " (lBlock == "" ? "<ul>" : "") (lIndent == 2 ? "<li>" : "") Escaped(lText)
            lBlock = "list"
        }
    }
    EndBlock(lBlock, iLast + 1)
}

# The change of depth by the braces of a line of code.
function DepthChange(iLine) {
    gsub(/'[^']*'|"[^"]*"/, "", iLine)
    sub(/\/\/.*$/, "", iLine)
    return gsub(/\{/, "", iLine) - gsub(/\}/, "", iLine)
}

# The comment in the lines from iFirst to iLast, rewritten, as one that fits into a line.
function Joined(iFirst, iLast,    lLine, lText, lResult) {
    for (lLine = iFirst; lLine <= iLast; lLine++) {
        lText = substr(gLines[lLine], 5)
        lResult = lResult " " (lText == "" ? "<p>" : lText)
    }
    return "/**" lResult " */ "
}

# Repeats a comment before the second and every further declaration of those that begin at iLine.
function Repeat(iComment, iLine,    lDepth, lIsEnd, lIsNew) {
    lIsNew = 0
    for (lDepth = 0; iLine <= gCount; iLine++) {
        if (lDepth == 0 && (gLines[iLine] == "" || IsComment(gLines[iLine]) || gLines[iLine] ~ /^ *(}|[a-z]+:$)/)) {
            return
        }
        lDepth += DepthChange(gLines[iLine])
        lIsEnd = lDepth == 0 && gLines[iLine] ~ /[;}]( *\/\/.*)?$/
        if (lIsNew) {
            gLines[iLine] = iComment gLines[iLine]
        }
        lIsNew = lIsEnd
    }
}

# Leads from the class of a header to what the header says for all of it, and from a class without a comment as well.
function Lead(iLine,    lName, lText) {
    lName = gLines[iLine]
    sub(/^class ([A-Z0-9_]+_EXPORT )?/, "", lName)
    sub(/[ :].*$/, "", lName)
    iLine -= gLines[iLine - 1] ~ /^template/ ? 2 : 1
    if (gLines[iLine] == "" || gFile ~ "/" lName "\\.h$") {
        lText = gLines[iLine] == "" ? "///" : gLines[iLine] "<p>"
        gLines[iLine] = lText " What holds for all of it is told with its header, \\ref " gFile "."
    }
}

# Rewrites the comment that begins at a line, where it describes something, and returns its last line.
function Describe(iFirst,    lLast) {
    lLast = iFirst
    while (lLast < gCount && IsComment(gLines[lLast + 1])) {
        lLast++
    }
    if (iFirst == 1) {
        Rewrite(1, lLast)
        sub(/^\/\/\//, "/// \\file " gFile, gLines[1])
    } else if (gLines[lLast + 1] != "") {
        Rewrite(iFirst, lLast)
        Repeat(Joined(iFirst, lLast), lLast + 1)
    }
    return lLast
}

FNR == 1 {
    gFile = FILENAME
    while (gFile ~ /\/.*\//) {
        sub(/^[^\/]*\//, "", gFile)
    }
}

{
    gLines[++gCount] = $0
}

END {
    for (lLine = 1; lLine <= gCount; lLine++) {
        if (IsComment(gLines[lLine])) {
            lLine = Describe(lLine)
        } else if (gLines[lLine] ~ /[^a-zA-Z_]m[A-Z][a-zA-Z]*( = [^;]*)?; \/\/ /) {
            lText = gLines[lLine]
            sub(/^.*; \/\/ /, "", lText)
            sub(/; \/\/ .*$/, ";", gLines[lLine])
            gLines[lLine] = gLines[lLine] " ///< " Escaped(lText)
        }
    }
    for (lLine = 1; lLine <= gCount; lLine++) {
        if (gLines[lLine] ~ /^class .*[^;]$/) {
            Lead(lLine)
        }
    }
    for (lLine = 1; lLine <= gCount; lLine++) {
        print gLines[lLine]
    }
}
