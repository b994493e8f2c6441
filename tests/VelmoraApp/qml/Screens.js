.pragma library

// Every visible item below `item`, itself included, that `wanted` picks.
function all(item, wanted) {
    const found = wanted(item) ? [item] : [];
    for (let index = 0; index < item.children.length; ++index) {
        if (item.children[index].visible)
            found.push(...all(item.children[index], wanted));
    }
    return found;
}

// Whether `item` and all below it have their places: what has just been shown gets them with the next frame.
function isLaidOut(testCase, item) {
    return all(item, child => testCase.isPolishScheduled(child)).length === 0;
}

function named(item, name) {
    return all(item, child => child.objectName === name);
}

// The rows of a list that exist, from the first to the last.
function rows(list) {
    const found = [];
    for (let index = 0; index < list.count; ++index) {
        const row = list.itemAtIndex(index);
        if (row)
            found.push(row);
    }
    return found;
}

function texts(item) {
    return all(item, child => child.text !== undefined && child.paintedWidth !== undefined).map(label => label.text);
}
