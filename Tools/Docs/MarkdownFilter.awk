# Doxygen's view of a document: prints it with what this Doxygen does not know of Markdown in words of its own.
#   - Headings get the anchors that links use. Links to the documents in the project's folder and in Docs lead to their
#     pages, links to other files are left out.
#   - `code` gets two marks, since an apostrophe would end it otherwise.
#   - A flowchart in mermaid, of the few kinds of lines that ours are made of, becomes a graph in dot.
# The number of lines stays the same, so that what Doxygen says of a line is true of the document.

# Doxygen does not ask how a filter ends, but who runs it listens to what it says.
function Fail(iText) {
    print FILENAME ":" FNR ": error: " iText > "/dev/stderr"
    exit 1
}

function Anchor(iText) {
    iText = tolower(iText)
    gsub(/[^a-z0-9 -]/, "", iText)
    gsub(/ /, "-", iText)
    return iText
}

# The page of a document: its name without folder and ending. The README is the main page.
function Page(iPath) {
    sub(/^.*\//, "", iPath)
    sub(/\.md$/, "", iPath)
    return Anchor(iPath)
}

# Returns the link, whose text is Markdown, to a target as it stands in the document.
function Link(iText, iTarget,    lHash, lFile, lPage) {
    if (iTarget ~ /^[a-z]+:\/\//) {
        return "[" iText "](" iTarget ")"
    }
    lHash = index(iTarget "#", "#")
    lFile = substr(iTarget, 1, lHash - 1)
    sub(/^(\.\.\/|Docs\/)/, "", lFile)
    if (lFile != "" && lFile !~ /^[^\/]*\.md$/) {
        return iText
    }
    lPage = lFile == "" ? gPage : Page(lFile)
    if (lHash <= length(iTarget)) {
        return "[" iText "](@ref " lPage "-" substr(iTarget, lHash + 1) ")"
    }
    return "[" iText "](@ref " (lPage == "readme" ? "index" : lPage) ")"
}

function WithLinks(iLine,    lResult, lEnd, lText) {
    while (match(iLine, /\[[^][]*\]\([^()]*\)/)) {
        lEnd = index(substr(iLine, RSTART), "](")
        lText = substr(iLine, RSTART + 1, lEnd - 2)
        lResult = lResult substr(iLine, 1, RSTART - 1) Link(lText, substr(iLine, RSTART + lEnd + 1, RLENGTH - lEnd - 2))
        iLine = substr(iLine, RSTART + RLENGTH)
    }
    if (iLine ~ /\]\([^()]*\.md/) {
        Fail("a link to a document has to stand in one line")
    }
    return lResult iLine
}

# Rewrites what stands outside and inside of code spans. One that goes on in the next line is left to Doxygen.
function Rewritten(iLine,    lParts, lCount, lIndex, lResult) {
    lCount = split(iLine, lParts, "`")
    if (lCount % 2 == 0) {
        return WithLinks(iLine)
    }
    for (lIndex = 1; lIndex <= lCount; lIndex++) {
        lResult = lResult (lIndex % 2 == 1 ? lParts[lIndex] : "``" lParts[lIndex] "``")
    }
    return WithLinks(lResult)
}

# A line of a flowchart: "flowchart LR", "a[text]", "a --> b", "a -->|text| b" or "a -.-> b"; the names are words.
function Dot(iLine,    lText, lFrom, lTo, lParts) {
    if (iLine ~ /^flowchart (LR|TD)$/) {
        return "digraph { rankdir=" (iLine ~ /LR$/ ? "LR" : "TB") "; node [shape=box, fontname=Helvetica]; " \
            "edge [fontname=Helvetica, fontsize=10];"
    }
    sub(/^ +/, "", iLine)
    if (iLine ~ /^[A-Za-z0-9]+\[.*\]$/) {
        lFrom = substr(iLine, 1, index(iLine, "[") - 1)
        lText = substr(iLine, length(lFrom) + 2, length(iLine) - length(lFrom) - 2)
        gsub(/"/, "", lText)
        gsub(/<br>/, "\\n", lText)
        return lFrom " [label=\"" lText "\"];"
    }
    if (iLine !~ /^[A-Za-z0-9]+ (-->|-\.->)(\|[^|]*\|)? [A-Za-z0-9]+$/) {
        Fail("this line of a flowchart is not known to Tools/Docs/MarkdownFilter.awk")
    }
    lFrom = substr(iLine, 1, index(iLine, " ") - 1)
    lTo = iLine
    sub(/^.* /, "", lTo)
    if (split(iLine, lParts, "|") == 3) {
        gsub(/"/, "", lParts[2])
        return lFrom " -> " lTo " [label=\"" lParts[2] "\"];"
    }
    return lFrom " -> " lTo (iLine ~ /-\.->/ ? " [style=dashed];" : ";")
}

FNR == 1 {
    gPage = Page(FILENAME)
}

/^<!-- .* -->$/ {
    print ""
    next
}

/^```mermaid$/ {
    gBlock = "mermaid"
    print "\\dot"
    next
}

/^```/ {
    print gBlock == "mermaid" ? "} \\enddot" : $0
    gBlock = gBlock == "" ? "code" : ""
    next
}

gBlock == "mermaid" {
    print Dot($0)
    next
}

gBlock == "code" || /^    / {
    print
    next
}

/^#+ / {
    lText = $0
    sub(/^#+ /, "", lText)
    lAnchor = gPage (/^# / ? "" : "-" Anchor(lText))
    print Rewritten($0) (lAnchor == "readme" ? "" : " {#" lAnchor "}")
    next
}

{
    print Rewritten($0)
}
