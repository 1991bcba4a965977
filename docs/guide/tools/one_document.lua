-- Pages become one document: links between them become links within it; links to files of the
-- repository, which a reader of the document does not have, become plain text.
function Link(link)
  local anchor = link.target:match("^[%w-]*%.?m?d?(#.*)$")
  if anchor then
    link.target = anchor
    return link
  end
  if not link.target:match("^%a+:") then return link.content end
end
